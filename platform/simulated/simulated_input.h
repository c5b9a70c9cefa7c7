#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "base/broadcaster.h"
#include "platform/geometry.h"
#include "platform/global_hot_keys.h"
#include "platform/private_functions.h"
#include "platform/simulated/desktop_state.h"
#include "platform/simulated/journal.h"
#include "platform/simulated/mission_control.h"
#include "platform/simulated/simulated_dock.h"

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

/// The simulated event services: every posted event is a line of the journal, then goes to the Dock, to Mission Control
/// and to the window under the pointer. Without accessibility permission it is dropped. Main thread only.
class SimulatedEvents : public Events {
 public:
  SimulatedEvents(const Clock& clock, SimulatedDock& dock, MissionControl& missionControl, WindowDragging& dragging,
                  DesktopState& state, Journal& journal)
      : clock_(clock),
        dock_(dock),
        missionControl_(missionControl),
        dragging_(dragging),
        state_(state),
        journal_(journal) {}

  CGEventPtr CGEventCreate() override;
  CGEventPtr CGEventCreateKeyboardEvent(VirtualKeyCode keyCode, bool down) override;
  CGEventPtr CGEventCreateMouseEvent(CGMouseEventType type, CGPoint location) override;
  CGEventPtr CGEventCreateFromData(std::string_view data) override;
  std::string CGEventCreateData(const CGEvent& event) override;
  void CGEventSetFlags(CGEvent& event, std::uint64_t flags) override;
  void CGEventSetIntegerValueField(CGEvent& event, CGEventField field, std::int64_t value) override;
  void CGEventSetDoubleValueField(CGEvent& event, CGEventField field, double value) override;
  double CGEventGetDoubleValueField(const CGEvent& event, CGEventField field) override;
  std::uint64_t CGEventGetTimestamp(const CGEvent& event) override;
  CGPoint CGEventGetLocation(const CGEvent& event) override;
  void CGEventPost(CGEventTap tap, const CGEvent& event) override;
  void CGWarpMouseCursorPosition(CGPoint position) override;
  std::uint32_t pressedMouseButtons() override { return state_.pressedMouseButtons; }
  CGPoint mouseLocation() override;

  /// What the user's own hand does, with the same effects as posted events.
  void movePointer(CGPoint location);
  void pressLeftButton();
  void releaseLeftButton();

 private:
  /// Performs a key press or a mouse event that the Dock left; other types need nothing done.
  void perform(const SimulatedEvent& event);

  const Clock& clock_;
  SimulatedDock& dock_;
  MissionControl& missionControl_;
  WindowDragging& dragging_;
  DesktopState& state_;
  Journal& journal_;
};

/// Key combinations of the simulated keyboard that reach the program. Registering and giving up one is a line of the
/// journal. Main thread only.
class SimulatedGlobalHotKeys : public GlobalHotKeys {
 public:
  SimulatedGlobalHotKeys(const DesktopState& state, Journal& journal) : state_(state), journal_(journal) {}

  std::optional<Subscription> registerHotKey(VirtualKeyCode keyCode, std::uint64_t modifierFlags,
                                             std::function<void()> pressed) override;

  /// The user presses a key combination. True when somebody has it, so that nobody else sees the key.
  bool press(VirtualKeyCode keyCode, std::uint64_t modifierFlags);

 private:
  struct Press {
    VirtualKeyCode keyCode = 0;
    std::uint64_t modifierFlags = 0;
    bool taken = false;
  };

  const DesktopState& state_;
  Journal& journal_;
  Broadcaster<Press&> presses_;
};

/// The multitouch devices, as the multitouch framework's functions see them. Main thread only.
class SimulatedTrackpads {
 public:
  SimulatedTrackpads(int count, const Clock& clock, Journal& journal)
      : devices_(static_cast<std::size_t>(count)), clock_(clock), journal_(journal) {}

  /// One opaque reference for each device.
  [[nodiscard]] std::vector<const void*> devices() const;

  void registerCallback(const void* device, private_functions::ContactFrameCallback callback);
  private_functions::Error start(const void* device, std::int32_t mode);

  /// A frame on the first device, if it was started, with contacts at these normalised positions (0 to 1, origin bottom
  /// left). Every registered callback gets it, one that was registered twice twice.
  void touch(const std::vector<CGPoint>& contacts);

 private:
  struct Device {
    std::vector<private_functions::ContactFrameCallback> callbacks;
    bool started = false;
  };
  Device* find(const void* device);

  std::vector<Device> devices_;  // never grows: its elements' addresses are the references
  const Clock& clock_;
  Journal& journal_;
  std::int32_t frame_ = 0;
};

}  // namespace tallowin
