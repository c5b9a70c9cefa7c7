#pragma once

#include "platform/events.h"

/// Input posted as if it came from the hardware. Main thread only. What the system refuses to make is not posted.
namespace tallowin::synthetic_input {

/// Where the pointer is, origin top left; (0, 0) when the system does not tell.
[[nodiscard]] inline CGPoint pointerLocation(Events& events) {
  const auto event = events.CGEventCreate();
  return event != nullptr ? events.CGEventGetLocation(*event) : CGPoint{};
}

inline void post(Events& events, const CGEventPtr& event) {
  if (event != nullptr) {
    events.CGEventPost(CGEventTap::hid, *event);
  }
}

/// One event of the left button or the bare pointer at `location`, origin top left.
inline void postMouse(Events& events, CGMouseEventType type, CGPoint location) {
  post(events, events.CGEventCreateMouseEvent(type, location));
}

/// Presses a key without modifiers and releases it.
inline void typeKey(Events& events, VirtualKeyCode keyCode) {
  for (const bool down : {true, false}) {
    post(events, events.CGEventCreateKeyboardEvent(keyCode, down));
  }
}

}  // namespace tallowin::synthetic_input
