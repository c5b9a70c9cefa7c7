#include "tests/soak/random/invariant.h"

#include <algorithm>
#include <set>

#include "base/property_list_reading.h"
#include "tests/soak/random/random_scenario.h"

namespace tallowin {

namespace {

using Json = nlohmann::ordered_json;

/// A number that does not fit is none to those who read the list.
bool isIntactSpace(const Json& space, bool byPlace) {
  return space.is_object() && property_list::integer(space.value("ManagedSpaceID", Json())) &&
         (byPlace || (space.value("uuid", Json()).is_string() && space["uuid"] != "")) &&
         space.value("type", Json(0)).is_number_integer();
}

bool isIntactDisplay(const Json& display, bool byPlace) {
  if (!display.is_object() || !display.value("Display Identifier", Json()).is_string() ||
      !display.value("Spaces", Json()).is_array() || !display.value("Current Space", Json()).is_object()) {
    return false;
  }
  const auto& spaces = display["Spaces"];
  return std::ranges::all_of(spaces, [&](const Json& space) { return isIntactSpace(space, byPlace); }) &&
         std::ranges::any_of(spaces, [&](const Json& space) {
           return space["ManagedSpaceID"] == display["Current Space"].value("ManagedSpaceID", Json());
         });
}

bool isFaultyRecord(const Json& record) {
  return record.is_object() &&
         std::ranges::any_of(
             std::to_array<const char*>({"responseTime", "refusesClose", "unwritable", "missing", "base64", "text"}),
             [&](const char* member) { return record.contains(member); });
}

}  // namespace

bool SoakRun::isCalm() const {
  static const std::set<std::string> calmMembers = {
      "start",       "timeZone", "systemVersion",        "uptime",         "desktop",
      "preferences", "displays", "managedDisplaySpaces", "menuBarDisplay", "desktopsByPlace",
      "files",       "windows",  "applications",         "script"};
  const auto members = scenario.items();
  return hasIntactSpaces() &&
         std::ranges::all_of(members,
                             [](const auto& member) {
                               return calmMembers.contains(member.key()) &&
                                      std::ranges::none_of(member.value(), isFaultyRecord);
                             }) &&
         std::ranges::all_of(scenario.value("script", Json::array()),
                             [](const Json& action) { return isCalmAction(action["do"].get<std::string>()); });
}

bool SoakRun::areByPlace() const {
  return state().desktopsByPlace;
}

bool SoakRun::canReadSpaces() const {
  const auto missing = scenario.value("missingFunctions", Json::array());
  return scenario.value("connection", 1) != 0 && missing.is_array() && !mentions(missing, "Copy") &&
         !mentions(missing, "Connection");
}

bool SoakRun::hasIntactSpaces() const {
  const Json list = state().spaces.list();
  if (!list.is_array() || list.empty() ||
      !std::ranges::all_of(list, [&](const Json& display) { return isIntactDisplay(display, areByPlace()); })) {
    return false;
  }
  std::set<std::string> ids;
  return std::ranges::all_of(spaces(), [&](const TrueSpace& space) { return ids.insert(space.id).second; });
}

std::vector<TrueSpace> SoakRun::spaces() const {
  std::vector<TrueSpace> all;
  int desktops = 0;
  for (const auto& display : state().spaces.list()) {
    for (const auto& space : display["Spaces"]) {
      const bool isDesktop = space.value("type", 0) == 0;
      const auto id = "managed-" + space["ManagedSpaceID"].dump();
      all.push_back({space.value("uuid", id), space["ManagedSpaceID"], display["Display Identifier"],
                     space["ManagedSpaceID"] == display["Current Space"]["ManagedSpaceID"],
                     isDesktop ? ++desktops : 0});
    }
  }
  return all;
}

std::string SoakRun::activeID() const {
  const auto all = spaces();
  const auto found = std::ranges::find_if(
      all, [&](const TrueSpace& space) { return space.active && space.display == state().menuBarDisplay; });
  const auto first = std::ranges::find(all, true, &TrueSpace::active);
  return found != all.end() ? found->id : first != all.end() ? first->id : "";
}

Json SoakRun::supportFile(const std::string& name) const {
  const auto json = Json::parse(program.desktop.files().read(supportFolder + name).value_or(""), nullptr, false);
  return json.is_object() ? json : Json::object();
}

std::string rewrittenFile(const Json& record) {
  static const std::set<std::string> actions = {"writeFile", "deleteFile", "corruptFile", "setPreference",
                                                "removePreference"};
  if (!actions.contains(actionIn(record))) {
    return "";
  }
  const std::string path = record.value("path", "/home/user/.config/tallowin/preferences.json");
  return path.starts_with("~") ? "/home/user" + path.substr(1) : path;
}

}  // namespace tallowin
