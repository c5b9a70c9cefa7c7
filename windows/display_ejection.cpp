#include "windows/display_ejection.h"

#include <algorithm>

#include "core/display_lookup.h"

namespace tallowin {

namespace {

std::vector<Space> ordinarySpaces(const DisplaySpaces& display) {
  auto spaces = display.spaces;
  std::erase_if(spaces, &Space::isFullscreen);
  return spaces;
}

}  // namespace

std::optional<DisplaySpaces> homeDisplay(Displays& displays, const SpaceSnapshot& snapshot) {
  const auto builtin = std::ranges::find_if(snapshot.displays, [&](const DisplaySpaces& candidate) {
    const auto display = displayWithIdentifier(displays, candidate.id);
    return display != 0 && displays.CGDisplayIsBuiltin(display);
  });
  return builtin != snapshot.displays.end() ? std::optional(*builtin) : snapshot.menuBarDisplay();
}

std::vector<SpaceEjection> planEjection(const SpaceSnapshot& snapshot, const DisplaySpaces& home) {
  const auto homeSpaces = ordinarySpaces(home);
  std::vector<SpaceEjection> plan;
  for (const auto& display : snapshot.displays) {
    if (display.id == home.id || homeSpaces.empty()) {
      continue;
    }
    const auto spaces = ordinarySpaces(display);
    for (std::size_t i = 0; i < spaces.size(); ++i) {
      plan.push_back({spaces[i], homeSpaces[std::min(i, homeSpaces.size() - 1)]});
    }
  }
  return plan;
}

}  // namespace tallowin
