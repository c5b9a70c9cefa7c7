#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "platform/clock.h"
#include "platform/emulated/desktop_operations.h"
#include "platform/emulated/dock_swipe.h"
#include "platform/emulated/emulated_event.h"
#include "platform/emulated/symbolic_hot_keys.h"
#include "platform/log.h"
#include "platform/main_queue.h"

namespace tallowin {

/// What differs between one system's Dock and another's.
struct DockBehaviour {
  /// Newer Docks take only swipes that carry the device's own report.
  bool requiresAugmentedSwipes = false;
  /// Whether the user scrolls naturally: an augmented swipe with a positive direction then goes to the right, else to
  /// the left. Plain swipes with a positive direction always go to the right.
  std::function<bool()> naturalScrolling = [] { return true; };
  /// Whether the screen is locked. The Dock then takes its events and does nothing.
  std::function<bool()> screenLocked = [] { return false; };
  /// A switch that has not arrived after this long is not waited for any more.
  Duration patience = std::chrono::seconds(1);
  /// The active Space of a display that steps count from, where all gestures come from this process and count from what
  /// it was last told; without it they count from where the display is, or is heading.
  std::function<std::optional<ManagedSpaceID>(const std::string& display)> lastReported;
  /// Told when a switch has not arrived in time.
  std::function<void()> givenUp;
};

/// Plays the Dock where there is none: takes the gesture events and hot keys that the real one takes, and switches
/// desktops. A burst of steps ends in one switch, made on the main queue right after the burst. Main thread only.
class EmulatedDock {
 public:
  EmulatedDock(DesktopOperations& desktops, const SymbolicHotKeys& hotKeys, MainQueue& queue, const Clock& clock,
               Log& log, DockBehaviour behaviour);

  /// Offers a posted event. True when the Dock took it, so that nobody else gets it: every Dock-control event, and the
  /// presses and releases of enabled hot keys.
  bool handle(const EmulatedEvent& event);

  /// What it makes of an event, in words such as "a swipe to the right ends"; empty when the event is nothing to it.
  [[nodiscard]] std::string meaning(const EmulatedEvent& event) const;

  /// The Space that a display, of which `active` is seen to be the active one, is on its way to after everything that
  /// has been posted; nothing when it is not on its way anywhere.
  [[nodiscard]] std::optional<ManagedSpaceID> heading(const std::string& display, std::optional<ManagedSpaceID> active);

  /// To be called whenever a display's active Space has changed, by whomever: later steps count from there.
  void activeSpaceChanged(const std::string& display);

 private:
  /// Where one display's Spaces are heading.
  struct Journey {
    int steps = 0;                             ///< not yet performed, positive to the right
    SwitchCause cause = SwitchCause::gesture;  ///< of the latest of them
    std::optional<ManagedSpaceID> base;     ///< where they count from, if that is not found out when they are performed
    std::optional<ManagedSpaceID> heading;  ///< a switch that was begun and has not been seen to arrive
    std::optional<ManagedSpaceID> origin;   ///< what was active when it was begun
    std::uint64_t headingSince = 0;         ///< in ticks
    WorkItem work;
    WorkItem givingUp;
  };

  void swipe(const EmulatedEvent& event);
  /// 1 to the right, -1 to the left.
  [[nodiscard]] int direction(const DockSwipe& swipe) const;
  void step(int steps, SwitchCause cause);
  void perform(const std::string& display);
  bool pressHotKey(const EmulatedEvent& event);
  void switchToDesktop(std::size_t number);
  void head(Journey& journey, const DesktopRow& row, ManagedSpaceID space, SwitchCause cause);
  [[nodiscard]] std::optional<ManagedSpaceID> departure(Journey& journey, const DesktopRow& row) const;
  [[nodiscard]] bool isUnderWay(const Journey& journey) const;

  DesktopOperations& desktops_;
  const SymbolicHotKeys& hotKeys_;
  MainQueue& queue_;
  const Clock& clock_;
  Log& log_;
  const DockBehaviour behaviour_;

  std::optional<int> swipeDirection_;  ///< of the swipe that began and has not ended
  std::set<VirtualKeyCode> heldKeys_;  ///< presses that the Dock took, whose releases it takes too
  std::map<std::string, Journey> journeys_;
};

}  // namespace tallowin
