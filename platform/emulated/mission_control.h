#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/accessibility.h"
#include "platform/emulated/desktop_operations.h"
#include "platform/emulated/mission_control_behaviour.h"
#include "platform/geometry.h"
#include "platform/main_queue.h"

namespace tallowin {

class MissionControlBar;

/// Plays Mission Control where there is none: the bar with the desktops of each display, as the accessibility elements
/// of the Dock and as places on the screen that take clicks. Main thread only.
class MissionControl {
 public:
  /// `boundsOf` gives the bounds of the display with that identifier.
  MissionControl(DesktopOperations& desktops, MainQueue& queue,
                 std::function<CGRect(const std::string& display)> boundsOf, MissionControlBehaviour behaviour = {});

  /// The Dock notification that opens Mission Control, or closes it when it is open or opening.
  static constexpr auto awakeNotification = "com.apple.expose.awake";

  /// Takes a Dock notification; others than the one above do nothing.
  void notify(std::string_view notification);

  /// Offers a key press. True when it was taken: Escape, while Mission Control is open or opening, closes it.
  bool keyDown(VirtualKeyCode keyCode);

  /// The pointer was moved by an event.
  void pointerMoved(CGPoint location);

  /// Offers a click, made by releasing the left button. True when it was taken: while Mission Control is open it takes
  /// every click; one on the close badge of a hovered thumbnail removes that desktop, one elsewhere on a thumbnail
  /// chooses that Space.
  bool clicked(CGPoint location);

  [[nodiscard]] bool isOpen() const;

  /// The Dock's application element: its icons and, while it is open, Mission Control. It may outlive this object; then
  /// it has no attributes.
  [[nodiscard]] AXUIElement dockElement() const;

 private:
  // Owned here; the elements hold it weakly, to see whether Mission Control still exists.
  const std::shared_ptr<MissionControlBar> bar_;
};

}  // namespace tallowin
