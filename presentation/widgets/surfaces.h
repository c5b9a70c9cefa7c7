#pragma once

#include "platform/pinned.h"
#include "presentation/link/messages.h"
#include "presentation/widgets/dialogs.h"
#include "presentation/widgets/feedback.h"
#include "presentation/widgets/hud_window.h"
#include "presentation/widgets/instance.h"
#include "presentation/widgets/status_surface.h"

namespace tallowin {

/// Everything that the ui process shows, by what it is told. Main thread only.
class Surfaces : Pinned {
 public:
  explicit Surfaces(Instance& instance)
      : statusItem_(instance), dialogs_(instance, [this](const QSize& extent) { return hud_.placeFor(extent); }) {}

  void show(const ui::Message& message);

 private:
  HUDWindow hud_;
  FeedbackPlayer feedback_;
  StatusSurface statusItem_;
  Dialogs dialogs_;
};

}  // namespace tallowin
