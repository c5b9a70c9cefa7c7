#include "core/space_provider.h"

#include <algorithm>

#include "base/property_list_reading.h"

namespace tallowin {

namespace {

using property_list::member;

constexpr auto category = "SpaceProvider";
constexpr std::int64_t fullscreenType = 4;

std::string identity(const PropertyList& entry, ManagedSpaceID managedID) {
  auto uuid = member(entry, "uuid", property_list::text);
  return uuid && !uuid->empty() ? *std::move(uuid) : idOfManagedSpace(managedID);
}

bool isFullscreen(const PropertyList& entry) {
  const auto* tiles = member(entry, "TileLayoutManager");
  return member(entry, "type", property_list::integer) == fullscreenType || (tiles != nullptr && tiles->is_object());
}

std::optional<ManagedSpaceID> currentSpace(const PropertyList& display) {
  const auto* current = member(display, "Current Space");
  return current != nullptr ? member(*current, "ManagedSpaceID", property_list::integer) : std::nullopt;
}

/// `desktops` counts the ordinary desktops of the whole list.
DisplaySpaces readDisplay(const PropertyList& display, std::string id, const PropertyList& entries,
                          std::int64_t& desktops) {
  DisplaySpaces result;
  result.id = std::move(id);
  const auto current = currentSpace(display);
  std::int64_t index = -1;
  for (const auto& entry : entries) {
    ++index;
    const auto managedID = member(entry, "ManagedSpaceID", property_list::integer);
    if (!managedID) {
      continue;
    }
    Space space;
    space.id = identity(entry, *managedID);
    space.managedID = *managedID;
    space.displayID = result.id;
    space.indexOnDisplay = index;
    space.isFullscreen = isFullscreen(entry);
    space.isActive = current == managedID;
    if (space.isFullscreen) {
      space.fullscreenPID = member(entry, "pid", property_list::integer32);
    } else {
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

std::optional<std::vector<DisplaySpaces>> SpaceProvider::readDisplays(const PropertyList& list,
                                                                      const std::string& menuBarDisplay) {
  if (property_list::listOfDictionaries(&list) == nullptr) {
    return std::nullopt;
  }
  std::vector<DisplaySpaces> displays;
  std::int64_t desktops = 0;
  for (const auto& display : list) {
    auto id = member(display, "Display Identifier", property_list::text);
    const auto* entries = property_list::listOfDictionaries(member(display, "Spaces"));
    if (!id || entries == nullptr) {
      continue;
    }
    displays.push_back(readDisplay(display, *std::move(id), *entries, desktops));
    displays.back().isMenuBarDisplay = displays.back().id == menuBarDisplay;
  }
  if (!displays.empty() && std::ranges::none_of(displays, &DisplaySpaces::isMenuBarDisplay)) {
    displays.front().isMenuBarDisplay = true;
  }
  return displays;
}

std::optional<SpaceSnapshot> SpaceProvider::snapshot() const {
  const auto list = windowServer_.CGSBridgeCopyManagedDisplaySpaces();
  if (!list || property_list::listOfDictionaries(&*list) == nullptr) {
    log_.error(category, "CGSCopyManagedDisplaySpaces returned nothing");
    return std::nullopt;
  }
  const auto menuBarDisplay = windowServer_.CGSBridgeCopyActiveMenuBarDisplayIdentifier().value_or("Main");
  auto displays = readDisplays(*list, menuBarDisplay);
  if (!displays || displays->empty()) {
    return std::nullopt;
  }
  return SpaceSnapshot{*std::move(displays), clock_.now()};
}

std::string idOfManagedSpace(ManagedSpaceID managedID) {
  return "managed-" + std::to_string(managedID);
}

}  // namespace tallowin
