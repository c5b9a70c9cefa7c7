#include "commands/space_switcher.h"

#include <algorithm>
#include <cstdlib>

#include "core/display_lookup.h"

namespace tallowin {

namespace {

constexpr auto category = "Switcher";

constexpr std::uint32_t leftButton = 1;

}  // namespace

SpaceSwitcher::SpaceSwitcher(Services services)
    : services_(services),
      swipes_({services.events, services.preferences, services.system, services.clock}),
      hotKeys_({services.windowServer, services.events, services.mainQueue, services.log}),
      bounces_(services.clock, services.log) {}

bool SpaceSwitcher::switchTo(const Space& target, const SpaceSnapshot& snapshot) {
  const auto display = snapshot.display(target);
  const auto active = display ? display->activeSpace() : std::nullopt;
  if (!active) {
    services_.log.error(category, "target display or current space missing");
    return false;
  }
  if (active->id == target.id) {
    return true;
  }
  if (!services_.accessibility.AXIsProcessTrustedWithOptions(true)) {
    services_.log.error(category, "accessibility not granted");
    return false;
  }
  if (willSwitch) {
    willSwitch(snapshot);
  }
  const auto steps = target.indexOnDisplay - active->indexOnDisplay;
  if (switchesClassically()) {
    return classicSwitch(target, steps);
  }
  bringPointerTo(display->id);
  if (!swipes_.postSwipe(steps)) {
    return false;
  }
  bounces_.switched(display->id, active->id, target.id);
  return true;
}

bool SpaceSwitcher::switchesClassically() const {
  // A drag with the button held ends when the trackpad seems to be swiped.
  return services_.settings.switchMode() == SwitchMode::classic || bounces_.prefersClassicAfterBounces() ||
         (services_.events.pressedMouseButtons() & leftButton) != 0;
}

bool SpaceSwitcher::classicSwitch(const Space& target, std::int64_t steps) {
  if (!target.isFullscreen && target.desktopNumber && *target.desktopNumber <= symbolic_hot_key::desktops) {
    return hotKeys_.postSymbolicHotKey(symbolic_hot_key::firstDesktop + static_cast<int>(*target.desktopNumber) - 1);
  }
  const int hotKey = steps < 0 ? symbolic_hot_key::moveLeft : symbolic_hot_key::moveRight;
  for (std::int64_t step = 0; step < std::abs(steps); ++step) {
    if (!hotKeys_.postSymbolicHotKey(hotKey)) {
      return false;
    }
  }
  return steps != 0;
}

/// The Dock swipes the display that the pointer is on.
void SpaceSwitcher::bringPointerTo(const std::string& displayIdentifier) {
  const auto display = displayWithIdentifier(services_.displays, displayIdentifier);
  if (display == 0) {
    return;
  }
  const auto bounds = services_.displays.CGDisplayBounds(display);
  if (!bounds.contains(pointer())) {
    services_.events.CGWarpMouseCursorPosition(bounds.center());
  }
}

CGPoint SpaceSwitcher::pointer() const {
  const auto location = services_.events.mouseLocation();
  const auto main = services_.displays.CGDisplayBounds(services_.displays.CGMainDisplayID());
  return {location.x, main.size.height - location.y};
}

std::optional<DisplaySpaces> SpaceSwitcher::displayUnderMouse(const SpaceSnapshot& snapshot) const {
  if (snapshot.displays.size() < 2) {
    return snapshot.displays.empty() ? std::nullopt : std::optional(snapshot.displays.front());
  }
  const auto screens = services_.displays.screens();
  const auto screen = std::ranges::find_if(
      screens, [at = pointer()](const Screen& candidate) { return candidate.bounds.contains(at); });
  if (screen == screens.end()) {
    return std::nullopt;
  }
  const auto display = std::ranges::find_if(snapshot.displays, [&](const DisplaySpaces& candidate) {
    return displayWithIdentifier(services_.displays, candidate.id) == screen->displayID;
  });
  return display != snapshot.displays.end() ? std::optional(*display) : std::nullopt;
}

}  // namespace tallowin
