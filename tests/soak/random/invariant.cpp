#include "tests/soak/random/invariant.h"

#include <set>

namespace tallowin {

namespace {

using Json = nlohmann::ordered_json;

const std::set<std::string> faultyMembers = {
    "missingFunctions", "notificationFailures", "ignoredMoves", "disk", "permissions",
    "screenLocked",     "takenPorts",           "connection",   "dock", "missionControl",
    "symbolicHotKeys",  "pressedMouseButtons"};

const std::set<std::string> calmActions = {"switchSpace",
                                           "addSpace",
                                           "removeSpace",
                                           "activateApplication",
                                           "launchApplication",
                                           "quitApplication",
                                           "hideApplication",
                                           "unhideApplication",
                                           "openWindow",
                                           "closeWindow",
                                           "retitleWindow",
                                           "moveWindow",
                                           "minimizeWindow",
                                           "setPreference",
                                           "movePointer",
                                           "openURL",
                                           "runCommand",
                                           "httpRequest",
                                           "runScriptCommand",
                                           "runIntent",
                                           "speak",
                                           "callDBus",
                                           "listenToDBus",
                                           "sleepScreens",
                                           "wakeScreens",
                                           "wake",
                                           "renamePlist",
                                           "answerAlert",
                                           "answerRenameDialog",

                                           "quit"};

bool isIntactSpace(const Json& space) {
  return space.is_object() && space.value("ManagedSpaceID", Json()).is_number_integer() &&
         space.value("uuid", Json()).is_string() && space["uuid"] != "" &&
         space.value("type", Json(0)).is_number_integer();
}

bool isIntactDisplay(const Json& display) {
  if (!display.is_object() || !display.value("Display Identifier", Json()).is_string() ||
      !display.value("Spaces", Json()).is_array() || !display.value("Current Space", Json()).is_object()) {
    return false;
  }
  const auto& spaces = display["Spaces"];
  return std::ranges::all_of(spaces, isIntactSpace) && std::ranges::any_of(spaces, [&](const Json& space) {
           return space["ManagedSpaceID"] == display["Current Space"].value("ManagedSpaceID", Json());
         });
}

bool hasFaultyRecord(const Json& records) {
  return std::ranges::any_of(records, [](const Json& record) {
    return record.is_object() &&
           (record.contains("responseTime") || record.contains("refusesClose") || record.contains("unwritable") ||
            record.contains("missing") || record.contains("base64") || record.contains("text"));
  });
}

}  // namespace

bool SoakRun::isCalm() const {
  const auto faulty = [](const auto& member) {
    return faultyMembers.contains(member.key()) || hasFaultyRecord(member.value());
  };
  for (const auto& member : scenario.items()) {
    if (member.key() != "script" && member.value().is_structured() && faulty(member)) {
      return false;
    }
    if (faultyMembers.contains(member.key())) {
      return false;
    }
  }
  return hasIntactSpaces() && std::ranges::all_of(scenario.value("script", Json::array()), [](const Json& action) {
           return calmActions.contains(action["do"].get<std::string>());
         });
}

bool SoakRun::canReadSpaces() const {
  const auto missing = scenario.value("missingFunctions", Json::array());
  return scenario.value("connection", 1) != 0 && missing.is_array() &&
         std::ranges::none_of(missing, [](const Json& name) {
           const auto text = name.get<std::string>();
           return text.find("Copy") != std::string::npos || text.find("Connection") != std::string::npos;
         });
}

bool SoakRun::hasIntactSpaces() const {
  const Json list = state().spaces.list();
  if (!list.is_array() || list.empty() || !std::ranges::all_of(list, isIntactDisplay)) {
    return false;
  }
  std::set<std::string> ids;
  const auto all = spaces();
  return std::ranges::all_of(all, [&](const TrueSpace& space) { return ids.insert(space.id).second; });
}

std::string rewrittenFile(const Json& record) {
  static const std::set<std::string> actions = {"writeFile", "deleteFile", "corruptFile", "setPreference",
                                                "removePreference"};
  if (record["op"] != "script" || !actions.contains(record["do"].get<std::string>())) {
    return "";
  }
  const std::string path = record.value("path", "/home/user/.config/tallowin/preferences.json");
  return path.starts_with("~") ? "/home/user" + path.substr(1) : path;
}

}  // namespace tallowin
