#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "platform/events.h"

namespace tallowin {

/// An input event where the system has none of Quartz's kind: its fields by number, and the bytes of a device report
/// that may follow its serialised form.
struct EmulatedEvent : CGEvent {
  /// Fields with a meaning of their own (CGEventTypes.h; 55 is the event's type in every event).
  static constexpr CGEventField keyCodeField = 9;  // kCGKeyboardEventKeycode
  static constexpr CGEventField typeField = 55;

  /// Event types (CGEventTypes.h; the Dock-control type is undocumented).
  static constexpr std::int64_t keyDown = 10;
  static constexpr std::int64_t keyUp = 11;
  static constexpr std::int64_t dockControl = 30;

  using Field = std::variant<std::int64_t, double>;

  std::uint64_t timestamp = 0;
  std::uint64_t flags = 0;
  CGPoint location;
  std::map<CGEventField, Field> fields;
  std::string payload;

  /// A field's value in the asked type, converted when it was set in the other; 0 when it was never set. Doubles are
  /// cut off toward zero and held within range.
  [[nodiscard]] std::int64_t integer(CGEventField field) const;
  [[nodiscard]] double real(CGEventField field) const;
  [[nodiscard]] std::int64_t type() const { return integer(typeField); }

  /// The serialised form: a version, the fixed parts, the fields, then the payload. Numbers are big-endian.
  [[nodiscard]] std::string serialised() const;
  /// The event with this serialised form; bytes after its last field become its payload. Nothing for anything else.
  [[nodiscard]] static std::optional<EmulatedEvent> deserialised(std::string_view bytes);
};

}  // namespace tallowin
