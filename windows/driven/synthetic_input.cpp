#include "windows/driven/synthetic_input.h"

namespace tallowin::synthetic_input {

CGPoint pointerLocation(Events& events) {
  const auto event = events.CGEventCreate();
  return event != nullptr ? events.CGEventGetLocation(*event) : CGPoint{};
}

void postMouse(Events& events, CGMouseEventType type, CGPoint location) {
  if (const auto event = events.CGEventCreateMouseEvent(type, location)) {
    events.CGEventPost(CGEventTap::hid, *event);
  }
}

void typeKey(Events& events, VirtualKeyCode keyCode) {
  for (const bool down : {true, false}) {
    if (const auto event = events.CGEventCreateKeyboardEvent(keyCode, down)) {
      events.CGEventPost(CGEventTap::hid, *event);
    }
  }
}

}  // namespace tallowin::synthetic_input
