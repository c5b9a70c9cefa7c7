#include "commands/driven/space_driver.h"

#include <cstdlib>
#include <utility>

#include "core/display_lookup.h"
#include "platform/accessibility.h"
#include "platform/window_server.h"

namespace tallowin {

namespace {

constexpr auto driverCategory = "Switcher";
constexpr std::uint32_t leftButton = 1;
constexpr auto restoreDelay = std::chrono::milliseconds(1500);
/// Later than this a return to the old Space is somebody's wish. In ticks.
constexpr std::uint64_t bounceWindow = 350'000'000;
constexpr int bouncesTolerated = 2;

}  // namespace

bool SpaceDriver::mayDrive() {
  return services_.driven->accessibility.AXIsProcessTrustedWithOptions(true);
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
  gestureRecords_[displayID] = {active.id, target.id, services_.clock.machAbsoluteTime(), false};
  return true;
}

bool SpaceDriver::switchesClassically() const {
  // A drag with the button held ends when the trackpad seems to be swiped.
  return services_.settings.get(setting::switchMode) == SwitchMode::classic || prefersClassicAfterBounces_ ||
         (services_.events.pressedMouseButtons() & leftButton) != 0;
}

bool SpaceDriver::classicSwitch(const Space& target, std::int64_t steps) {
  if (!target.isFullscreen && target.desktopNumber && *target.desktopNumber <= symbolic_hot_key::desktops) {
    return postSymbolicHotKey(symbolic_hot_key::firstDesktop + static_cast<int>(*target.desktopNumber) - 1);
  }
  const int hotKey = steps < 0 ? symbolic_hot_key::moveLeft : symbolic_hot_key::moveRight;
  for (std::int64_t step = 0; step < std::abs(steps); ++step) {
    if (!postSymbolicHotKey(hotKey)) {
      return false;
    }
  }
  return steps != 0;
}

bool SpaceDriver::postSymbolicHotKey(int hotKey) {
  auto& windowServer = services_.driven->windowServer;
  const auto binding = windowServer.CGSBridgeGetSymbolicHotKey(hotKey);
  if (!binding) {
    services_.log.error(driverCategory, "no key binding for symbolic hot key " + std::to_string(hotKey));
    return false;
  }
  if (!windowServer.CGSBridgeIsSymbolicHotKeyEnabled(hotKey) && !enable(hotKey)) {
    return false;
  }
  if (!forceEnabledHotKeys_.empty()) {
    scheduleHotKeyRestore();
  }
  auto& events = services_.events;
  const auto down = events.CGEventCreateKeyboardEvent(binding->keyCode, true);
  const auto up = events.CGEventCreateKeyboardEvent(binding->keyCode, false);
  if (down == nullptr || up == nullptr) {
    return false;
  }
  events.CGEventSetFlags(*down, binding->modifierFlags);
  events.CGEventSetFlags(*up, 0);
  events.CGEventPost(CGEventTap::hid, *down);
  events.CGEventPost(CGEventTap::hid, *up);
  return true;
}

bool SpaceDriver::enable(int hotKey) {
  const bool isEnabled = services_.driven->windowServer.CGSBridgeSetSymbolicHotKeyEnabled(hotKey, true);
  if (isEnabled) {
    forceEnabledHotKeys_.insert(hotKey);
  }
  return isEnabled;
}

void SpaceDriver::scheduleHotKeyRestore() {
  restoreWork_ = services_.mainQueue.after(restoreDelay, [this] { restoreHotKeys(); });
}

void SpaceDriver::restoreHotKeys() {
  for (const int hotKey : std::exchange(forceEnabledHotKeys_, {})) {
    services_.driven->windowServer.CGSBridgeSetSymbolicHotKeyEnabled(hotKey, false);
  }
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

void SpaceDriver::observe(const SpaceSnapshot& snapshot) {
  for (const auto& display : snapshot.displays) {
    const auto found = gestureRecords_.find(display.id);
    if (found == gestureRecords_.end() || !display.activeSpace()) {
      continue;
    }
    auto& record = found->second;
    if (services_.clock.machAbsoluteTime() - record.madeAt > bounceWindow) {
      gestureRecords_.erase(found);
    } else if (record.armed && display.activeSpaceID == record.originID) {
      gestureRecords_.erase(found);
      countBounce();
    } else if (display.activeSpaceID == record.targetID) {
      record.armed = true;
    }
  }
}

void SpaceDriver::countBounce() {
  ++bounceCount_;
  if (bounceCount_ >= bouncesTolerated && !prefersClassicAfterBounces_) {
    prefersClassicAfterBounces_ = true;
    services_.log.error(driverCategory, "gesture switches bounce back, using classic switching for this session");
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
