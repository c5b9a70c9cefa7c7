#include "commands/space_switcher.h"

#include <algorithm>

#include "core/display_lookup.h"

namespace tallowin {

namespace {

constexpr auto switcherCategory = "Switcher";

}  // namespace

SpaceSwitcher::SpaceSwitcher(const SwitchServices& services) : services_(services) {
  if (services.driven != nullptr) {
    driver_.emplace(services);
  }
}

bool SpaceSwitcher::switchTo(const Space& target, const SpaceSnapshot& snapshot) {
  const auto display = snapshot.display(target);
  const auto active = display ? display->activeSpace() : std::nullopt;
  if (!active) {
    services_.log.error(switcherCategory, "target display or current space missing");
    return false;
  }
  if (active->id == target.id) {
    return true;
  }
  if (driver_ && !driver_->mayDrive()) {
    services_.log.error(switcherCategory, "accessibility not granted");
    return false;
  }
  if (willSwitch) {
    willSwitch(snapshot);
  }
  return driver_ ? driver_->drive(display->id, *active, target) : services_.asked->switchTo(target.managedID);
}

void SpaceSwitcher::observe(const SpaceSnapshot& snapshot) {
  if (driver_) {
    driver_->observe(snapshot);
  }
}

std::optional<DisplaySpaces> SpaceSwitcher::displayUnderMouse(const SpaceSnapshot& snapshot) const {
  if (snapshot.displays.size() < 2) {
    return snapshot.displays.empty() ? std::nullopt : std::optional(snapshot.displays.front());
  }
  const auto screens = services_.displays.screens();
  const auto screen =
      std::ranges::find_if(screens, [at = pointerOnDisplays(services_.events, services_.displays)](
                                        const Screen& candidate) { return candidate.bounds.contains(at); });
  if (screen == screens.end()) {
    return std::nullopt;
  }
  const auto display = std::ranges::find_if(snapshot.displays, [&](const DisplaySpaces& candidate) {
    return displayWithIdentifier(services_.displays, candidate.id) == screen->displayID;
  });
  return display != snapshot.displays.end() ? std::optional(*display) : std::nullopt;
}

}  // namespace tallowin
