#pragma once

#include <functional>

namespace tallowin {

/// A way to ask for the overview without a key: the screen's edges ("hotCorner", "notchHover"), the trackpad
/// ("fourFingerTap"). Main thread only.
class OverviewTrigger {
 public:
  virtual ~OverviewTrigger() = default;

  /// `pulled` is told each time.
  virtual void setHandler(std::function<void()> pulled) = 0;

  /// Follows the settings. To be called at the start and when they have changed.
  virtual void refresh() = 0;
};

}  // namespace tallowin
