#include "core/space_provider.h"

namespace tallowin {

namespace {

/// `desktops` counts the ordinary desktops of the whole reading.
DisplaySpaces displaySpaces(const DesktopDisplay& display, std::int64_t& desktops) {
  DisplaySpaces result;
  result.id = display.id;
  result.isMenuBarDisplay = display.isMenuBarDisplay;
  for (const auto& entry : display.spaces) {
    Space space;
    space.id = entry.uuid.empty() ? idOfManagedSpace(entry.id) : entry.uuid;
    space.managedID = entry.id;
    space.displayID = display.id;
    space.indexOnDisplay = entry.index;
    space.isFullscreen = entry.isFullscreen;
    space.fullscreenPID = entry.fullscreenPID;
    space.isActive = display.current == entry.id;
    if (!space.isFullscreen) {
      space.desktopNumber = ++desktops;
    }
    if (space.isActive) {
      result.activeSpaceID = space.id;
    }
    result.spaces.push_back(std::move(space));
  }
  return result;
}

}  // namespace

std::vector<DisplaySpaces> SpaceProvider::displays(const DesktopReading& reading) {
  std::vector<DisplaySpaces> displays;
  std::int64_t desktops = 0;
  for (const auto& display : reading.displays) {
    displays.push_back(displaySpaces(display, desktops));
  }
  return displays;
}

std::optional<DesktopReading> SpaceProvider::read() const {
  auto reading = desktop_.read();
  if (!reading) {
    log_.error("SpaceProvider", "CGSCopyManagedDisplaySpaces returned nothing");
  }
  return reading;
}

std::optional<SpaceSnapshot> SpaceProvider::snapshot(const DesktopReading& reading) const {
  return reading.displays.empty() ? std::nullopt : std::optional(SpaceSnapshot{displays(reading), clock_.now()});
}

std::optional<SpaceSnapshot> SpaceProvider::snapshot() const {
  const auto reading = read();
  return reading ? snapshot(*reading) : std::nullopt;
}

std::string idOfManagedSpace(ManagedSpaceID managedID) {
  return "managed-" + std::to_string(managedID);
}

}  // namespace tallowin
