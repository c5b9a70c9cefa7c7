#include "core/display_lookup.h"

#include <algorithm>

namespace tallowin {

DisplayID displayWithIdentifier(Displays& displays, std::string_view identifier) {
  return identifier == "Main" ? displays.CGMainDisplayID() : displays.CGDisplayGetDisplayIDFromUUID(identifier);
}

std::optional<Screen> screenWithIdentifier(Displays& displays, std::string_view identifier) {
  const auto display = displayWithIdentifier(displays, identifier);
  const auto screens = displays.screens();
  const auto found = std::ranges::find(screens, display, &Screen::displayID);
  return display != 0 && found != screens.end() ? std::optional(*found) : std::nullopt;
}

CGPoint pointerOnDisplays(Events& events, Displays& displays) {
  const auto location = events.mouseLocation();
  return {location.x, displays.CGDisplayBounds(displays.CGMainDisplayID()).size.height - location.y};
}

}  // namespace tallowin
