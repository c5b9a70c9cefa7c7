#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/geometry.h"
#include "platform/identifiers.h"

namespace tallowin {

/// An input event under construction. Opaque; made and filled in by Events.
class CGEvent {
 public:
  virtual ~CGEvent() = default;
};

using CGEventPtr = std::unique_ptr<CGEvent>;

/// Where posted events enter the system (CGEventTypes.h, CGEventTapLocation).
enum class CGEventTap : std::uint32_t {
  hid = 0,      ///< kCGHIDEventTap: as if they came from the hardware
  session = 1,  ///< kCGSessionEventTap: into the user's login
};

/// Mouse events (CGEventTypes.h, CGEventType).
enum class CGMouseEventType : std::uint32_t {
  leftMouseDown = 1,
  leftMouseUp = 2,
  mouseMoved = 5,
  leftMouseDragged = 6,
};

/// A field of an event, by number (CGEventTypes.h, CGEventField, and undocumented ones).
using CGEventField = std::uint32_t;

/// Modifier flags of events (CGEventTypes.h, CGEventFlags).
namespace CGEventFlag {
inline constexpr std::uint64_t shift = 0x20000;
inline constexpr std::uint64_t control = 0x40000;
inline constexpr std::uint64_t alternate = 0x80000;  ///< the Option key
inline constexpr std::uint64_t command = 0x100000;
/// The four modifiers that tell key combinations apart.
inline constexpr std::uint64_t modifiers = shift | control | alternate | command;
}  // namespace CGEventFlag

/// Synthetic input and the state of keyboard and pointer, under the names of Quartz event services. Main thread only.
/// Making an event answers null when the system refuses.
class Events {
 public:
  virtual ~Events() = default;

  /// An event of no type yet, located at the pointer.
  virtual CGEventPtr CGEventCreate() = 0;
  /// A press (`down`) or release of a key. Flags start at 0.
  virtual CGEventPtr CGEventCreateKeyboardEvent(VirtualKeyCode keyCode, bool down) = 0;
  /// A mouse event of the left button at `location`, origin top left.
  virtual CGEventPtr CGEventCreateMouseEvent(CGMouseEventType type, CGPoint location) = 0;
  /// An event rebuilt from its serialised form; null when the bytes are not one.
  virtual CGEventPtr CGEventCreateFromData(std::string_view data) = 0;

  /// The event's serialised form. It begins with the four bytes 00 00 00 02, its version.
  virtual std::string CGEventCreateData(const CGEvent& event) = 0;

  virtual void CGEventSetFlags(CGEvent& event, std::uint64_t flags) = 0;
  virtual void CGEventSetIntegerValueField(CGEvent& event, CGEventField field, std::int64_t value) = 0;
  virtual void CGEventSetDoubleValueField(CGEvent& event, CGEventField field, double value) = 0;
  /// The field's value; 0 when it was never set.
  virtual double CGEventGetDoubleValueField(const CGEvent& event, CGEventField field) = 0;
  /// In ticks of Clock::machAbsoluteTime; 0 when the event has no time.
  virtual std::uint64_t CGEventGetTimestamp(const CGEvent& event) = 0;
  /// Origin top left.
  virtual CGPoint CGEventGetLocation(const CGEvent& event) = 0;

  /// Posts the event as it is now; it can be changed and posted again. Without accessibility permission the system
  /// drops it.
  virtual void CGEventPost(CGEventTap tap, const CGEvent& event) = 0;

  /// Moves the pointer without an event, origin top left.
  virtual void CGWarpMouseCursorPosition(CGPoint position) = 0;

  /// NSEvent pressedMouseButtons: bit 0 the left button, bit 1 the right one, bit 2 the middle one.
  virtual std::uint32_t pressedMouseButtons() = 0;

  /// NSEvent mouseLocation: origin at the bottom left of the main display, y growing upwards.
  virtual CGPoint mouseLocation() = 0;
};

}  // namespace tallowin
