#pragma once

#include "platform/pinned.h"
#include "presentation/model/status_item.h"
#include "presentation/widgets/instance.h"
#include "presentation/widgets/status_menu.h"

namespace tallowin {

/// What the user's pointer does over the status item, however a panel shows it. Main thread only.
class StatusControls : Pinned {
 public:
  explicit StatusControls(Instance& instance) : instance_(instance), menu_(instance) {}

  [[nodiscard]] StatusMenu& menu() { return menu_; }

  void goBack() { instance_.perform({"back"}); }

  /// The wheel was turned by so many eighths of a degree; up is positive.
  void turnWheel(int eighths, bool switches);

 private:
  Instance& instance_;
  StatusMenu menu_;
  WheelSteps wheel_;
};

}  // namespace tallowin
