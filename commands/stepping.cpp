#include "commands/stepping.h"

#include <algorithm>
#include <iterator>

namespace tallowin {

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
