#include "commands/driven/space_driver.h"

#include <cstdlib>

#include "core/display_lookup.h"

namespace tallowin {

namespace {

constexpr std::uint32_t leftButton = 1;

}  // namespace

SpaceDriver::SpaceDriver(Services services)
    : services_(services),
      swipes_({services.events, services.preferences, services.system, services.clock}),
      hotKeys_({services.driven.windowServer, services.events, services.mainQueue, services.log}),
      bounces_(services.clock, services.log) {}

bool SpaceDriver::mayDrive() {
  return services_.driven.accessibility.AXIsProcessTrustedWithOptions(true);
}

bool SpaceDriver::drive(const std::string& displayID, const Space& active, const Space& target) {
  const auto steps = target.indexOnDisplay - active.indexOnDisplay;
  if (switchesClassically()) {
    return classicSwitch(target, steps);
  }
  bringPointerTo(displayID);
  if (!swipes_.postSwipe(steps)) {
    return false;
  }
  bounces_.switched(displayID, active.id, target.id);
  return true;
}

bool SpaceDriver::switchesClassically() const {
  // A drag with the button held ends when the trackpad seems to be swiped.
  return services_.settings.get(setting::switchMode) == SwitchMode::classic || bounces_.prefersClassicAfterBounces() ||
         (services_.events.pressedMouseButtons() & leftButton) != 0;
}

bool SpaceDriver::classicSwitch(const Space& target, std::int64_t steps) {
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
void SpaceDriver::bringPointerTo(const std::string& displayID) {
  const auto display = displayWithIdentifier(services_.displays, displayID);
  if (display == 0) {
    return;
  }
  const auto bounds = services_.displays.CGDisplayBounds(display);
  if (!bounds.contains(pointerOnDisplays(services_.events, services_.displays))) {
    services_.events.CGWarpMouseCursorPosition(bounds.center());
  }
}

DesktopHotKey hotKeyOfDesktop(std::int64_t number, DrivenServices* driven) {
  DesktopHotKey found;
  found.hotKey = static_cast<int>(symbolic_hot_key::firstDesktop + number - 1);
  if (driven != nullptr) {
    const auto binding = driven->windowServer.CGSBridgeGetSymbolicHotKey(found.hotKey);
    found.isBound = binding.has_value();
    found.keyCode = binding.value_or(SymbolicHotKeyBinding{}).keyCode;
    found.modifierFlags = binding.value_or(SymbolicHotKeyBinding{}).modifierFlags;
    found.isEnabled = driven->windowServer.CGSBridgeIsSymbolicHotKeyEnabled(found.hotKey);
  }
  return found;
}

}  // namespace tallowin
