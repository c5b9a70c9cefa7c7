#include "core/space.h"

#include <algorithm>

#include "base/hashes.h"

namespace tallowin {

namespace {

template <typename Range, typename Predicate>
auto firstOf(const Range& range, Predicate predicate) -> std::optional<typename Range::value_type> {
  const auto found = std::ranges::find_if(range, predicate);
  return found != range.end() ? std::optional(*found) : std::nullopt;
}

}  // namespace

std::optional<Space> DisplaySpaces::activeSpace() const {
  return activeSpaceID ? firstOf(spaces, [this](const Space& space) { return space.id == *activeSpaceID; })
                       : std::nullopt;
}

SpaceSnapshot SpaceSnapshot::empty() {
  return {{}, Date::min()};
}

std::vector<Space> SpaceSnapshot::allSpaces() const {
  std::vector<Space> all;
  for (const auto& display : displays) {
    all.insert(all.end(), display.spaces.begin(), display.spaces.end());
  }
  return all;
}

std::vector<Space> SpaceSnapshot::activeSpaces() const {
  std::vector<Space> active;
  for (const auto& display : displays) {
    if (auto space = display.activeSpace()) {
      active.push_back(*std::move(space));
    }
  }
  return active;
}

std::optional<Space> SpaceSnapshot::activeSpace() const {
  const auto display = menuBarDisplay();
  return display ? display->activeSpace() : std::nullopt;
}

std::optional<Space> SpaceSnapshot::desktop(std::int64_t number) const {
  return firstOf(allSpaces(), [number](const Space& space) { return space.desktopNumber == number; });
}

std::optional<Space> SpaceSnapshot::space(std::string_view id) const {
  return firstOf(allSpaces(), [id](const Space& space) { return space.id == id; });
}

bool SpaceSnapshot::isActive(std::string_view id) const {
  const auto found = space(id);
  return found && found->isActive;
}

std::optional<Space> SpaceSnapshot::managed(ManagedSpaceID id) const {
  return firstOf(allSpaces(), [id](const Space& space) { return space.managedID == id; });
}

std::optional<DisplaySpaces> SpaceSnapshot::menuBarDisplay() const {
  if (auto found = firstOf(displays, [](const DisplaySpaces& display) { return display.isMenuBarDisplay; })) {
    return found;
  }
  return displays.empty() ? std::nullopt : std::optional(displays.front());
}

std::optional<DisplaySpaces> SpaceSnapshot::display(const Space& space) const {
  return firstOf(displays, [&space](const DisplaySpaces& display) { return display.id == space.displayID; });
}

}  // namespace tallowin

std::size_t std::hash<tallowin::Space>::operator()(const tallowin::Space& space) const noexcept {
  return tallowin::combinedHash(space.id, space.managedID, space.displayID, space.desktopNumber, space.indexOnDisplay,
                                space.isFullscreen, space.fullscreenPID, space.isActive);
}

std::size_t std::hash<tallowin::DisplaySpaces>::operator()(const tallowin::DisplaySpaces& display) const noexcept {
  return tallowin::combinedHash(display.id, tallowin::hashOfAll(display.spaces), display.activeSpaceID,
                                display.isMenuBarDisplay);
}

std::size_t std::hash<tallowin::SpaceSnapshot>::operator()(const tallowin::SpaceSnapshot& snapshot) const noexcept {
  return tallowin::combinedHash(tallowin::hashOfAll(snapshot.displays), snapshot.timestamp.time_since_epoch().count());
}
