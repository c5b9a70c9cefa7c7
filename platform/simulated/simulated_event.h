#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "platform/events.h"
#include "platform/property_list.h"

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

}  // namespace tallowin
