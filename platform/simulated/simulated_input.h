#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/broadcaster.h"
#include "platform/geometry.h"
#include "platform/global_hot_keys.h"
#include "platform/simulated/desktop_state.h"
#include "platform/simulated/journal.h"
#include "platform/simulated/mission_control.h"
#include "platform/simulated/simulated_dock.h"

namespace tallowin {

/// The simulated event services: every posted event is a line of the journal, then goes to the Dock, to Mission Control
/// and to the window under the pointer. Without accessibility permission it is dropped. Main thread only.
class SimulatedEvents : public Events {
 public:
  SimulatedEvents(const Clock& clock, SimulatedDock& dock, MissionControl& missionControl, DesktopState& state,
                  Journal& journal)
      : clock_(clock), dock_(dock), missionControl_(missionControl), state_(state), journal_(journal) {}

  CGEventPtr CGEventCreate() override { return makeEvent(state_.pointer); }
  CGEventPtr CGEventCreateKeyboardEvent(VirtualKeyCode keyCode, bool down) override;
  CGEventPtr CGEventCreateMouseEvent(CGMouseEventType type, CGPoint location) override;
  CGEventPtr CGEventCreateFromData(std::string_view data) override;
  std::string CGEventCreateData(const CGEvent& event) override { return ours(event).serialised(); }
  void CGEventSetFlags(CGEvent& event, std::uint64_t flags) override { ours(event).flags = flags; }
  void CGEventSetIntegerValueField(CGEvent& event, CGEventField field, std::int64_t value) override {
    ours(event).fields[field] = value;
  }
  void CGEventSetDoubleValueField(CGEvent& event, CGEventField field, double value) override {
    ours(event).fields[field] = value;
  }
  double CGEventGetDoubleValueField(const CGEvent& event, CGEventField field) override {
    return ours(event).real(field);
  }
  std::uint64_t CGEventGetTimestamp(const CGEvent& event) override { return ours(event).timestamp; }
  CGPoint CGEventGetLocation(const CGEvent& event) override { return ours(event).location; }
  void CGEventPost(CGEventTap tap, const CGEvent& event) override;
  void CGWarpMouseCursorPosition(CGPoint position) override;
  std::uint32_t pressedMouseButtons() override { return state_.pressedMouseButtons; }
  CGPoint mouseLocation() override;

  /// What the user's own hand does, with the same effects as posted events. A window whose title bar is held follows
  /// the pointer.
  void movePointer(CGPoint location);
  void pressLeftButton();
  void releaseLeftButton();

  /// A Space of the display under the pointer has become active: a window that is held is there now.
  void carryWindowTo(ManagedSpaceID space);

 private:
  struct Held {
    WindowNumber number = 0;
    CGPoint pointer;
  };

  // Every event that reaches this service was made by it.
  static SimulatedEvent& ours(CGEvent& event) { return static_cast<SimulatedEvent&>(event); }
  static const SimulatedEvent& ours(const CGEvent& event) { return static_cast<const SimulatedEvent&>(event); }

  [[nodiscard]] std::unique_ptr<SimulatedEvent> makeEvent(CGPoint location) const;
  /// Performs a key press or a mouse event that the Dock left; other types need nothing done.
  void perform(const SimulatedEvent& event);
  [[nodiscard]] SimulatedWindow* heldWindow() { return held_ ? state_.window(held_->number) : nullptr; }

  const Clock& clock_;
  SimulatedDock& dock_;
  MissionControl& missionControl_;
  DesktopState& state_;
  Journal& journal_;
  std::optional<Held> held_;  ///< the window that is held by its title bar
};

/// Key combinations of the simulated keyboard that reach the program. Registering and giving up one is a line of the
/// journal. Main thread only.
class SimulatedGlobalHotKeys : public GlobalHotKeys {
 public:
  SimulatedGlobalHotKeys(const DesktopState& state, Journal& journal) : state_(state), journal_(journal) {}

  std::unique_ptr<HotKey> registerHotKey(VirtualKeyCode keyCode, std::uint64_t modifierFlags,
                                         std::function<void()> pressed) override;
  void retry() override;

  /// The user presses a key combination. True when somebody has it, so that nobody else sees the key.
  bool press(VirtualKeyCode keyCode, std::uint64_t modifierFlags);

 private:
  class Registration;

  struct Press {
    VirtualKeyCode keyCode = 0;
    std::uint64_t modifierFlags = 0;
    bool taken = false;
  };

  const DesktopState& state_;
  Journal& journal_;
  Broadcaster<Press&> presses_;
  std::vector<Registration*> registrations_;
};

}  // namespace tallowin
