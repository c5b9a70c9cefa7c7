#pragma once

#include <optional>

#include "platform/simulated/desktop_state.h"

namespace tallowin {

/// A window that is held by its title bar: it follows the pointer, and goes along when the Space changes under it. Main
/// thread only.
class WindowDragging {
 public:
  /// The title bar takes this much of a window's top, in points.
  static constexpr double titleBarHeight = 28;

  explicit WindowDragging(DesktopState& state) : state_(state) {}

  /// Grabs the frontmost window at this point if the point is in its title bar.
  void begin(CGPoint location);
  void pointerMoved(CGPoint location);
  void end() { held_.reset(); }

  /// A Space of the display under the pointer has become active: the held window is there now.
  void carryTo(ManagedSpaceID space);

  [[nodiscard]] bool isDragging() const { return held_.has_value(); }

 private:
  struct Held {
    WindowNumber number = 0;
    CGPoint pointer;
  };

  DesktopState& state_;
  std::optional<Held> held_;
};

}  // namespace tallowin
