#pragma once

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "platform/simulated/desktop_state.h"

namespace tallowin {

/// The display that comes and goes.
inline constexpr auto outerDisplay = "BBBBBBBB-0000-4000-8000-000000000002";

/// Two displays with two desktops each, somewhere in a day that is five and a half hours ahead of UTC.
inline std::string desktopAt(unsigned hour) {
  auto scenario = nlohmann::ordered_json::parse(R"json({
    "timeZone": "+05:30",
    "uptime": 86400,
    "preferences": {"thumbnailsEnabled": false, "localAPI": true, "didShowOnboarding": true},
    "displays": [
      {"id": 1, "uuid": "AAAAAAAA-0000-4000-8000-000000000001", "bounds": [0, 0, 1440, 900], "builtin": true},
      {"id": 2, "uuid": "BBBBBBBB-0000-4000-8000-000000000002", "bounds": [1440, 0, 1920, 1080]}
    ],
    "managedDisplaySpaces": [
      {"Display Identifier": "AAAAAAAA-0000-4000-8000-000000000001", "Current Space": {"ManagedSpaceID": 1}, "Spaces": [
        {"ManagedSpaceID": 1, "uuid": "5ACE0000-0000-4000-8000-000000000001", "type": 0},
        {"ManagedSpaceID": 2, "uuid": "5ACE0000-0000-4000-8000-000000000002", "type": 0}]},
      {"Display Identifier": "BBBBBBBB-0000-4000-8000-000000000002", "Current Space": {"ManagedSpaceID": 3}, "Spaces": [
        {"ManagedSpaceID": 3, "uuid": "5ACE0000-0000-4000-8000-000000000003", "type": 0},
        {"ManagedSpaceID": 4, "uuid": "5ACE0000-0000-4000-8000-000000000004", "type": 0}]}
    ],
    "menuBarDisplay": "AAAAAAAA-0000-4000-8000-000000000001",
    "applications": [
      {"name": "Editor", "pid": 100, "bundleID": "org.example.Editor", "active": true},
      {"name": "Mail", "pid": 101, "bundleID": "org.example.Mail"}
    ],
    "files": {"~/.local/share/Tallowin/api-token.txt": "5e7f2c1a"}})json");
  scenario["start"] = "2026-03-02T" + std::string(hour < 10 ? "0" : "") + std::to_string(hour) + ":00:00Z";
  return scenario.dump();
}

/// A Space as the simulated window server has it.
struct TrueSpace {
  std::string id;
  ManagedSpaceID managedID;
  std::string display;
  bool active;
  int number;  ///< of the desktop; 0 for a full-screen Space
};

/// All of them, in the order in which desktops are numbered.
inline std::vector<TrueSpace> trueSpaces(const DesktopState& state) {
  std::vector<TrueSpace> all;
  int desktops = 0;
  for (const auto& display : state.spaces.list()) {
    for (const auto& space : display["Spaces"]) {
      const bool isDesktop = space.value("type", 0) == 0;
      all.push_back({space["uuid"], space["ManagedSpaceID"], display["Display Identifier"],
                     space["ManagedSpaceID"] == display["Current Space"]["ManagedSpaceID"],
                     isDesktop ? ++desktops : 0});
    }
  }
  return all;
}

/// The active Space of the menu-bar display, which is the first one if there is no other.
inline std::string trueActiveID(const DesktopState& state) {
  const auto all = trueSpaces(state);
  const auto found = std::ranges::find_if(
      all, [&](const TrueSpace& space) { return space.active && space.display == state.menuBarDisplay; });
  const auto first = std::ranges::find(all, true, &TrueSpace::active);
  return found != all.end() ? found->id : first != all.end() ? first->id : "";
}

}  // namespace tallowin
