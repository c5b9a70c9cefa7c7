#include "windows/display_set.h"

#include <algorithm>

#include "core/display_lookup.h"

namespace tallowin {

namespace {

std::vector<Space> ordinarySpaces(const DisplaySpaces& display) {
  auto spaces = display.spaces;
  std::erase_if(spaces, &Space::isFullscreen);
  return spaces;
}

double areaOf(const CGRect& rect) {
  return rect.size.width * rect.size.height;
}

const Monitor& homeMonitor(const std::vector<Monitor>& monitors) {
  auto home = std::ranges::find_if(monitors, &Monitor::isBuiltIn);
  if (home == monitors.end()) {
    home = std::ranges::find_if(monitors, &Monitor::isPrimary);
  }
  return home != monitors.end() ? *home : monitors.front();
}

/// The monitor that shows most of a frame, `home` if no other one shows more of it than that; null when none shows any.
const Monitor* monitorOf(const CGRect& frame, const Monitor& home, const std::vector<Monitor>& monitors) {
  const auto shown = [&](const Monitor& monitor) { return areaOf(intersection(frame, monitor.bounds)); };
  const auto& most = *std::ranges::max_element(monitors, {}, shown);
  const auto& found = shown(most) > shown(home) ? most : home;
  return shown(found) > 0 ? &found : nullptr;
}

/// The frame at its place in another area, made smaller and moved as far as is needed to lie inside.
CGRect inside(const CGRect& area, const CGRect& frame, CGPoint placeInItsArea) {
  const CGSize size{std::min(frame.size.width, area.size.width), std::min(frame.size.height, area.size.height)};
  const auto fitted = [](double place, double room) { return std::clamp(place, 0.0, room); };
  return {{area.origin.x + fitted(placeInItsArea.x, area.size.width - size.width),
           area.origin.y + fitted(placeInItsArea.y, area.size.height - size.height)},
          size};
}

}  // namespace

std::string DisplaySet::key() const {
  std::string key;
  for (const auto& identifier : identifiers) {
    key += (key.empty() ? "" : "+") + identifier;
  }
  return key;
}

DisplaySet connectedDisplays(Displays& displays, const SpaceSnapshot& snapshot) {
  DisplaySet set{displays.displaySetIdentifiers()};
  if (set.identifiers.empty()) {
    std::ranges::transform(snapshot.displays, std::back_inserter(set.identifiers), &DisplaySpaces::id);
  }
  std::ranges::sort(set.identifiers);
  return set;
}

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

std::vector<WindowEjection> planEjection(const std::vector<WindowInfo>& windows, const std::vector<Monitor>& monitors) {
  std::vector<WindowEjection> plan;
  if (monitors.empty()) {
    return plan;
  }
  const auto& home = homeMonitor(monitors);
  for (const auto& window : windows) {
    const auto* const monitor = monitorOf(window.frame, home, monitors);
    if (monitor != nullptr && monitor != &home) {
      const auto& corner = monitor->workArea.origin;
      const CGPoint place{window.frame.origin.x - corner.x, window.frame.origin.y - corner.y};
      plan.push_back({window, inside(home.workArea, window.frame, place)});
    }
  }
  return plan;
}

}  // namespace tallowin
