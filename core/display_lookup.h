#pragma once

#include <optional>
#include <string_view>

#include "platform/displays.h"
#include "platform/events.h"

namespace tallowin {

/// The display that a display identifier of the window server's list names: "Main" is the main display, anything else
/// the UUID of one. 0 when no such display is connected.
[[nodiscard]] DisplayID displayWithIdentifier(Displays& displays, std::string_view identifier);

/// The screen that shows the display with this identifier, or nothing.
[[nodiscard]] std::optional<Screen> screenWithIdentifier(Displays& displays, std::string_view identifier);

/// Where the pointer is, origin at the top left of the main display.
[[nodiscard]] CGPoint pointerOnDisplays(Events& events, Displays& displays);

}  // namespace tallowin
