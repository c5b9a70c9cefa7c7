#pragma once

#include <cstdint>
#include <expected>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "platform/clock.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/simulated/desktop_operations.h"
#include "platform/simulated/simulated_event.h"
#include "platform/simulated/symbolic_hot_keys.h"

namespace tallowin {

/// One event of a Dock swipe gesture, as read from its fields.
struct DockSwipe {
  enum class Phase { began = 1, changed = 2, ended = 4 };  // IOHIDEventTypes.h, gesture phase bits
  Phase phase = Phase::began;
  int direction = 1;       ///< +1 or -1, the sign of field 124
  bool augmented = false;  ///< it carries the device's own report behind its fields
};

/// Whether the event is a Dock-control event at all (field 55 = 30), well-formed or not.
[[nodiscard]] bool isDockControl(const SimulatedEvent& event);

/// Reads a horizontal Dock swipe. The error says what is wrong with it. A device report, where there is one, must be
/// 96 bytes long and agree with the fields that it repeats.
[[nodiscard]] std::expected<DockSwipe, std::string> readDockSwipe(const SimulatedEvent& event);

/// What differs between one system's Dock and another's.
struct DockBehaviour {
  /// Newer Docks take only swipes that carry the device's own report.
  bool requiresAugmentedSwipes = false;
  /// Whether the user scrolls naturally: an augmented swipe with a positive direction then goes to the right, else to
  /// the left. Plain swipes with a positive direction always go to the right.
  std::function<bool()> naturalScrolling = [] { return true; };
  /// Whether the screen is locked. The Dock then takes its events and does nothing.
  std::function<bool()> screenLocked = [] { return false; };
};

/// The simulated Dock: takes the gesture events and hot keys that the real one takes, and switches
/// desktops. A burst of steps ends in one switch, made on the main queue right after the burst. Main thread only.
class SimulatedDock {
 public:
  SimulatedDock(DesktopOperations& desktops, const SymbolicHotKeys& hotKeys, MainQueue& queue, const Clock& clock,
                Log& log, DockBehaviour behaviour);

  /// Offers a posted event. True when the Dock took it, so that nobody else gets it: every Dock-control event, and the
  /// presses and releases of enabled hot keys.
  bool handle(const SimulatedEvent& event);

  /// What it makes of an event, in words such as "a swipe to the right ends"; empty when the event is nothing to it.
  [[nodiscard]] std::string meaning(const SimulatedEvent& event) const;

  /// To be called whenever a display's active Space has changed, by whomever: later steps count from there.
  void activeSpaceChanged(const std::string& display);

 private:
  /// Where one display's Spaces are heading.
  struct Heading {
    int steps = 0;                             ///< not yet performed, positive to the right
    SwitchCause cause = SwitchCause::gesture;  ///< of the latest of them
    std::optional<ManagedSpaceID> space;       ///< of a switch that was begun and has not been seen to arrive
    std::uint64_t since = 0;                   ///< when it was begun, in ticks
    WorkItem work;
  };

  void swipe(const SimulatedEvent& event);
  /// 1 to the right, -1 to the left.
  [[nodiscard]] int direction(const DockSwipe& swipe) const;
  void step(int steps, SwitchCause cause);
  void perform(const std::string& display);
  bool pressHotKey(const SimulatedEvent& event);
  void switchToDesktop(std::size_t number);
  void head(Heading& heading, ManagedSpaceID space, SwitchCause cause);
  [[nodiscard]] std::optional<ManagedSpaceID> departure(Heading& heading, const DesktopDisplay& row) const;

  DesktopOperations& desktops_;
  const SymbolicHotKeys& hotKeys_;
  MainQueue& queue_;
  const Clock& clock_;
  Log& log_;
  const DockBehaviour behaviour_;

  std::optional<int> swipeDirection_;  ///< of the swipe that began and has not ended
  std::set<VirtualKeyCode> heldKeys_;  ///< presses that the Dock took, whose releases it takes too
  std::map<std::string, Heading> headings_;
};

}  // namespace tallowin
