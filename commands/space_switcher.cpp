#include "commands/space_switcher.h"

#include <algorithm>
#include <iterator>

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

std::optional<Space> neighbour(const DisplaySpaces& display, bool right, const SteppingRules& rules,
                               const std::function<bool(const Space&)>& isEmpty) {
  const auto& spaces = display.spaces;
  const auto count = std::ssize(spaces);
  const auto active =
      std::ranges::find(spaces, display.activeSpaceID, [](const Space& space) { return std::optional(space.id); });
  if (active == spaces.end()) {
    return std::nullopt;
  }
  const auto start = active - spaces.begin();
  for (std::ptrdiff_t steps = 1; steps < count; ++steps) {
    const auto at = start + (right ? steps : -steps);
    if (!rules.wrapAround && (at < 0 || at >= count)) {
      return std::nullopt;
    }
    const auto& candidate = spaces[static_cast<std::size_t>((at + count) % count)];
    if (!(rules.passOverFullscreen && candidate.isFullscreen) && !(rules.passOverEmpty && isEmpty(candidate))) {
      return candidate;
    }
  }
  return std::nullopt;
}

std::optional<Space> gridNeighbour(const DisplaySpaces& display, bool up, std::int64_t columns) {
  std::vector<Space> desktops;
  std::ranges::copy_if(display.spaces, std::back_inserter(desktops),
                       [](const Space& space) { return !space.isFullscreen; });
  const auto active =
      std::ranges::find(desktops, display.activeSpaceID, [](const Space& space) { return std::optional(space.id); });
  if (active == desktops.end() || columns <= 0) {
    return std::nullopt;
  }
  const auto at = active - desktops.begin();
  const auto left = up ? at : std::ssize(desktops) - 1 - at;  // so many desktops lie that way
  return columns <= left ? std::optional(desktops[static_cast<std::size_t>(up ? at - columns : at + columns)])
                         : std::nullopt;
}

}  // namespace tallowin
