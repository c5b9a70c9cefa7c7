#pragma once

#include <functional>
#include <optional>

#include "platform/accessibility.h"
#include "platform/events.h"
#include "platform/geometry.h"
#include "platform/main_queue.h"

namespace tallowin {

/// Carries a window to another Space by holding its title bar with the mouse while the Space is switched. Main thread
/// only. Destroyed while the button is held, it releases it and tells nobody.
class WindowDrag {
 public:
  WindowDrag(Accessibility& accessibility, Events& events, MainQueue& mainQueue)
      : accessibility_(accessibility), events_(events), mainQueue_(mainQueue) {}
  ~WindowDrag();
  WindowDrag(const WindowDrag&) = delete;
  WindowDrag& operator=(const WindowDrag&) = delete;

  struct Task {
    CGRect frame;                       ///< of the window, in screen coordinates, origin top left
    std::function<void()> switchSpace;  ///< runs when the window is held
    std::function<bool()> hasArrived;   ///< asked when it has been released
    std::function<void(bool)> done;     ///< told the answer; may destroy the drag
  };

  /// Begins at once: 0.12 seconds to the switch and 0.55 more to the release. The pointer goes back to where it was if
  /// the window has not arrived. Without permission, for which the system may ask the user, it ends before it begins.
  /// Must not be called while another drag is under way.
  void begin(Task task);

  [[nodiscard]] bool isUnderWay() const { return held_.has_value(); }

  /// Where a window is taken hold of: inside its title bar, clear of the buttons at the bar's left end.
  [[nodiscard]] static CGPoint grabPoint(const CGRect& frame);

 private:
  void switchSpace();
  void release();
  [[nodiscard]] CGPoint draggedTo() const;

  struct Held {
    Task task;
    CGPoint pointerBefore;
  };

  Accessibility& accessibility_;
  Events& events_;
  MainQueue& mainQueue_;
  std::optional<Held> held_;
  WorkItem next_;
};

}  // namespace tallowin
