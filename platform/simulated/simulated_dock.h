#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "platform/clock.h"
#include "platform/events.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/property_list.h"
#include "platform/simulated/desktop_state.h"
#include "platform/simulated/simulated_spaces.h"

namespace tallowin {

/// A simulated input event: its fields by number, and the bytes of a device report that may follow its serialised form.
struct SimulatedEvent : CGEvent {
  /// Fields with a meaning of their own (CGEventTypes.h; 55 is the event's type in every event).
  static constexpr CGEventField keyCodeField = 9;  // kCGKeyboardEventKeycode
  static constexpr CGEventField typeField = 55;

  /// Event types (CGEventTypes.h; the Dock-control type is undocumented).
  static constexpr std::int64_t keyDown = 10;
  static constexpr std::int64_t keyUp = 11;
  static constexpr std::int64_t dockControl = 30;

  std::uint64_t timestamp = 0;
  std::uint64_t flags = 0;
  CGPoint location;
  std::map<CGEventField, PropertyList> fields;  ///< integers and reals
  std::string payload;

  /// A field's value in the asked type, converted when it was set in the other; 0 when it was never set.
  [[nodiscard]] std::int64_t integer(CGEventField field) const;
  [[nodiscard]] double real(CGEventField field) const;
  [[nodiscard]] std::int64_t type() const { return integer(typeField); }

  /// The serialised form: its version, a line of JSON with the rest, then the payload.
  [[nodiscard]] std::string serialised() const;
  /// The event with this serialised form; bytes after its line become its payload. Nothing for what does not begin like
  /// one.
  [[nodiscard]] static std::optional<SimulatedEvent> deserialised(std::string_view bytes);
};

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
