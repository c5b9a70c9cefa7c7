#include "commands/space_switcher.h"

#include <algorithm>

#include "commands/driven/space_driver.h"
#include "core/display_lookup.h"

namespace tallowin {

namespace {

constexpr auto switcherCategory = "Switcher";

}  // namespace

SpaceSwitcher::SpaceSwitcher(Services services)
    : asked_(services.asked),
      events_(services.events),
      displays_(services.displays),
      log_(services.log),
      driver_(services.driven == nullptr
                  ? nullptr
                  : std::make_unique<SpaceDriver>(SpaceDriver::Services{
                        *services.driven, services.events, services.displays, services.preferences, services.system,
                        services.mainQueue, services.clock, services.settings, services.log})) {}

SpaceSwitcher::~SpaceSwitcher() = default;

bool SpaceSwitcher::switchTo(const Space& target, const SpaceSnapshot& snapshot) {
  const auto display = snapshot.display(target);
  const auto active = display ? display->activeSpace() : std::nullopt;
  if (!active) {
    log_.error(switcherCategory, "target display or current space missing");
    return false;
  }
  if (active->id == target.id) {
    return true;
  }
  if (driver_ != nullptr && !driver_->mayDrive()) {
    log_.error(switcherCategory, "accessibility not granted");
    return false;
  }
  if (willSwitch) {
    willSwitch(snapshot);
  }
  return driver_ != nullptr ? driver_->drive(display->id, *active, target) : asked_->switchTo(target.managedID);
}

void SpaceSwitcher::observe(const SpaceSnapshot& snapshot) {
  if (driver_ != nullptr) {
    driver_->observe(snapshot);
  }
}

std::optional<DisplaySpaces> SpaceSwitcher::displayUnderMouse(const SpaceSnapshot& snapshot) const {
  if (snapshot.displays.size() < 2) {
    return snapshot.displays.empty() ? std::nullopt : std::optional(snapshot.displays.front());
  }
  const auto screens = displays_.screens();
  const auto screen = std::ranges::find_if(
      screens,
      [at = pointerOnDisplays(events_, displays_)](const Screen& candidate) { return candidate.bounds.contains(at); });
  if (screen == screens.end()) {
    return std::nullopt;
  }
  const auto display = std::ranges::find_if(snapshot.displays, [&](const DisplaySpaces& candidate) {
    return displayWithIdentifier(displays_, candidate.id) == screen->displayID;
  });
  return display != snapshot.displays.end() ? std::optional(*display) : std::nullopt;
}

}  // namespace tallowin
