#pragma once

#include "platform/events.h"

/// Input posted as if it came from the hardware. Main thread only. What the system refuses to make is not posted.
namespace tallowin::synthetic_input {

/// Where the pointer is, origin top left; (0, 0) when the system does not tell.
[[nodiscard]] CGPoint pointerLocation(Events& events);

/// One event of the left button or the bare pointer at `location`, origin top left.
void postMouse(Events& events, CGMouseEventType type, CGPoint location);

/// Presses a key without modifiers and releases it.
void typeKey(Events& events, VirtualKeyCode keyCode);

}  // namespace tallowin::synthetic_input
