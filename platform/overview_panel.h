#pragma once

#include "platform/shown.h"

namespace tallowin {

/// The panel with a tile for each Space. Main thread only.
class OverviewPanel {
 public:
  virtual ~OverviewPanel() = default;

  /// Shows it, or hides it when it is shown.
  virtual Shown toggle() = 0;

  [[nodiscard]] virtual bool isShown() const = 0;
};

}  // namespace tallowin
