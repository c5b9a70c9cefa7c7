#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "platform/clock.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/simulated/desktop_state.h"
#include "platform/simulated/simulated_event.h"
#include "platform/simulated/simulated_spaces.h"

namespace tallowin {

/// The simulated Dock: takes the gesture events and hot keys that the real one takes, and switches desktops. A burst of
/// steps ends in one switch, made on the main queue right after the burst. While the screen is locked it takes its
/// events and does nothing. Main thread only.
class SimulatedDock {
 public:
  SimulatedDock(SimulatedSpaces& spaces, const DesktopState& state, MainQueue& queue, const Clock& clock, Log& log)
      : spaces_(spaces), state_(state), queue_(queue), clock_(clock), log_(log) {}

  /// Offers a posted event. True when the Dock took it, so that nobody else gets it: every Dock-control event, and the
  /// presses of enabled hot keys.
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
  [[nodiscard]] bool isNaturalScrolling() const;
  void step(int steps, SwitchCause cause);
  void perform(const std::string& display);
  bool pressHotKey(const SimulatedEvent& event);
  void switchToDesktop(std::size_t number);
  void head(Heading& heading, ManagedSpaceID space, SwitchCause cause);
  [[nodiscard]] std::optional<ManagedSpaceID> departure(Heading& heading, const DesktopDisplay& row) const;

  SimulatedSpaces& spaces_;
  const DesktopState& state_;
  MainQueue& queue_;
  const Clock& clock_;
  Log& log_;

  std::optional<int> swipeDirection_;  ///< of the swipe that began and has not ended
  std::map<std::string, Heading> headings_;
};

}  // namespace tallowin
