#include "core/driven/driven_desktop.h"

#include <algorithm>
#include <utility>

#include "base/property_list_reading.h"

namespace tallowin {

namespace {

using property_list::member;

constexpr std::int64_t fullscreenType = 4;

bool isFullscreen(const PropertyList& entry) {
  const auto* tiles = member(entry, "TileLayoutManager");
  return member(entry, "type", property_list::integer) == fullscreenType || (tiles != nullptr && tiles->is_object());
}

DesktopDisplay readDisplay(const PropertyList& display, std::string id, const PropertyList& entries) {
  DesktopDisplay result;
  result.id = std::move(id);
  if (const auto* current = member(display, "Current Space")) {
    result.current = member(*current, "ManagedSpaceID", property_list::integer);
  }
  std::int64_t index = -1;
  for (const auto& entry : entries) {
    ++index;
    if (const auto managedID = member(entry, "ManagedSpaceID", property_list::integer)) {
      const bool fullscreen = isFullscreen(entry);
      result.spaces.push_back({*managedID, member(entry, "uuid", property_list::text).value_or(""), index, fullscreen,
                               fullscreen ? member(entry, "pid", property_list::integer32) : std::nullopt});
    }
  }
  return result;
}

}  // namespace

std::optional<std::vector<DesktopDisplay>> readDisplays(const PropertyList& list, const std::string& menuBarDisplay) {
  if (property_list::listOfDictionaries(&list) == nullptr) {
    return std::nullopt;
  }
  std::vector<DesktopDisplay> displays;
  for (const auto& display : list) {
    auto id = member(display, "Display Identifier", property_list::text);
    const auto* entries = property_list::listOfDictionaries(member(display, "Spaces"));
    if (id && entries != nullptr) {
      displays.push_back(readDisplay(display, *std::move(id), *entries));
      displays.back().isMenuBarDisplay = displays.back().id == menuBarDisplay;
    }
  }
  if (!displays.empty() && std::ranges::none_of(displays, &DesktopDisplay::isMenuBarDisplay)) {
    displays.front().isMenuBarDisplay = true;
  }
  return displays;
}

std::optional<DesktopReading> DrivenDesktop::read() {
  const auto list = windowServer_.CGSBridgeCopyManagedDisplaySpaces();
  if (!list) {
    return std::nullopt;
  }
  auto displays = readDisplays(*list, windowServer_.CGSBridgeCopyActiveMenuBarDisplayIdentifier().value_or("Main"));
  return displays ? std::optional(DesktopReading{*std::move(displays)}) : std::nullopt;
}

std::optional<ManagedSpaceID> DrivenDesktop::activeSpace() {
  const auto active = static_cast<ManagedSpaceID>(windowServer_.CGSBridgeActiveSpace());
  return active != 0 ? std::optional(active) : std::nullopt;
}

bool DrivenDesktop::observe(std::function<void(const DesktopSign&)> observer) {
  observer_ = std::move(observer);
  return windowServer_.CGSBridgeRegisterSpaceNotifications(
      [&queue = mainQueue_, told = lifetime_.bound([this](WindowServerEvent event) {
        observer_({"ws:" + std::to_string(event)});
      })](WindowServerEvent event) { queue.async([told, event] { told(event); }); });
}

}  // namespace tallowin
