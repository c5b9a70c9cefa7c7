#include "tests/soak/random/random_scenario.h"

namespace tallowin {

namespace {

using Json = nlohmann::ordered_json;

/// What becomes part of a scenario now and then.
struct Part {
  int percent;
  const char* pattern;
};

constexpr auto basis = R"json({
  "start": "2026-03-02T$hour:15:00Z", "timeZone": "?UTC|+05:30|-03:00", "systemVersion": "?15.3.1|26.1|27.0",
  "preferences": {"thumbnailsEnabled": false, "localAPI": true},
  "files": {"~/.local/share/Tallowin/api-token.txt": "5e7f2c1a"}})json";

constexpr Part habits[] = {
    {30, R"({"uptime": 60})"},
    {25, R"({"preferences": {"switchMode": "classic"}})"},
    {10, R"({"preferences": {"thumbnailsEnabled": true}})"},
    {20, R"({"preferences": {"gridColumns": "$few"}})"},
    {20, R"({"preferences": {"scratchpadApp": "org.example.App$pid"}})"},
    {20, R"({"preferences": {"backAndForth": "$flag", "wrapAround": "$flag", "restoreFocus": "$flag"}})"},
    {20, R"({"preferences": {"askToNameNewSpaces": "$flag", "followMovedWindow": "$flag", "demoMode": "$flag"}})"},
    {20, R"({"preferences": {"timeTracking": "$flag", "spaceLock": "$flag", "hideFullscreenSpaces": "$flag"}})"},
    {40, R"json({"files": {"~/.local/share/Tallowin/spaces.json":
        "{\"5ACE0000-0000-4000-8000-00000000000$id\": {\"name\": \"Old\", \"ofANewerVersion\": 1}}"}})json"},
    {30, R"json({"files": {"~/.local/share/Tallowin/stats.json": "{\"2026-03-01\": {\"gone\": 60.5}}"}})json"},
    {20, R"json({"files": {"~/.local/share/Tallowin/saved-spaces.json": "[]"}})json"},
};

constexpr Part faults[] = {
    {3, R"({"missingFunctions": "all"})"},
    {9, R"(["missingFunctions", "SLSMainConnectionID", "_CGSDefaultConnection", "SLSCopyManagedDisplaySpaces",
        "CGSCopyManagedDisplaySpaces", "SLSCopyActiveMenuBarDisplayIdentifier", "SLSRegisterConnectionNotifyProc",
        "CGSRegisterConnectionNotifyProc", "CGSGetSymbolicHotKeyValue", "SLSGetSymbolicHotKeyValue",
        "CGSSetSymbolicHotKeyEnabled", "SLSSetSymbolicHotKeyEnabled", "SLSCopySpacesForWindows",
        "CGSCopySpacesForWindows", "SLSMoveWindowsToManagedSpace", "SLSBridgedMoveWindowsToManagedSpaceOperation",
        "SLSSpaceSetCompatID", "SLSSetWindowListWorkspace", "_AXUIElementGetWindow", "CoreDockSendNotification",
        "MTDeviceCreateList", "MTDeviceStart", "objc_msgSend"])"},
    {6, R"({"ignoredMoves": "all"})"},
    {6, R"(["ignoredMoves", "SLSBridgedMoveWindowsToManagedSpaceOperation", "SLSMoveWindowsToManagedSpace",
        "SLSSetWindowListWorkspace"])"},
    {7, R"(["notificationFailures", 1329, 1401, 1400, 1327])"},
    {9, R"({"disk": {"full": true}})"},
    {9, R"({"permissions": {"accessibility": "$flag", "screenRecording": "$flag"}})"},
    {6, R"({"screenLocked": true})"},
    {6, R"({"takenPorts": [57301]})"},
    {3, R"({"connection": 0})"},
    {12, R"({"dock": {"switchTime": "$moment", "bounces": {"count": "$few", "after": "$moment"}}})"},
    {12, R"({"missionControl": {"opens": "$flag", "openingTime": "$while", "addButton": "$flag",
        "closeButtons": "$flag"}})"},
    {15, R"({"requests": {"time": "$moment"}})"},
    {12, R"({"requests": {"signs": "?early|never", "tornFor": "$moment"}})"},
    {12, R"({"requests": {"ignored": ["?switch|add-space|remove-space|move-window|set-frame|close-window"]}})"},
    {8, R"({"requests": {"impossible": ["?add-space|remove-space|move-window"]}})"},
    {8, R"({"requests": {"partly": ["?remove-space|set-frame"]}})"},
    {10, R"({"symbolicHotKeys": {"118": {"keyCode": 18, "modifiers": 262144, "enabled": false},
        "119": {"keyCode": 19, "modifiers": 262144, "enabled": false}}})"},
    {6, R"({"managedDisplaySpaces": "$malformed"})"},
    {4, R"({"pressedMouseButtons": 1})"},
    {5, R"({"files": {"~/Library/Preferences/com.apple.spaces.plist": {"missing": true}}})"},
    {12,
     R"json({"files": {"~/.local/share/Tallowin/spaces.json": {"text": "?{torn|[5]||7", "unwritable": "$flag"}}})json"},
    {12,
     R"json({"files": {"~/.local/share/Tallowin/stats.json": {"text": "?{torn|[5]|", "unwritable": "$flag"}}})json"},
    {12, R"json({"files": {"~/.local/share/Tallowin/profiles.json": {"base64": "//7A"}}})json"},
    {12, R"json({"files": {"~/.local/share/Tallowin/saved-spaces.json": {"text": "?{torn|[5]|"}}})json"},
    {6, R"json({"files": {"~/.config/tallowin/preferences.json": {"text": "{torn"}}, "preferences": null})json"},
};

/// Adds what is drawn. A list begins with the name of a member, which gets some of the rest.
void add(Dice& dice, const Part& part, Json& scenario) {
  auto drawn = dice.fill(part.pattern);
  if (drawn.is_object()) {
    scenario.merge_patch(drawn);
    return;
  }
  auto some = Json::array();
  for (std::size_t i = 1; i < drawn.size(); ++i) {
    if (dice.chance(drawn.size() > 5 ? 15 : 50)) {
      some.push_back(drawn[i]);
    }
  }
  scenario[drawn[0].get<std::string>()] = std::move(some);
}

/// Each display has Spaces of its own, or one entry "Main" stands for them all, whose desktops may be known by their
/// places only.
void drawSpaces(Dice& dice, Json& scenario) {
  const int displays = dice.chance(50) ? 1 : dice.pick(2, 3);
  const bool byPlace = dice.chance(15);
  const bool shared = byPlace || dice.chance(30);
  int id = 0;
  for (int display = 1; display <= displays; ++display) {
    scenario["displays"].push_back(displayRecord(display));
    if (shared && display > 1) {
      continue;
    }
    auto spaces = Json::array();
    const int last = id + (dice.chance(5) ? 20 : dice.pick(1, 5));
    while (id < last) {
      const auto digits = std::to_string(100 + ++id).substr(1);
      spaces.push_back({{"ManagedSpaceID", id}, {"uuid", "5ACE0000-0000-4000-8000-0000000000" + digits}, {"type", 0}});
      if (byPlace) {
        spaces.back().erase("uuid");
      } else if (spaces.size() > 1 && dice.chance(10)) {
        spaces.back().update(dice.fill(R"({"type": 4, "pid": "$pid"})"));
      }
    }
    scenario["managedDisplaySpaces"].push_back(
        {{"Display Identifier", shared ? Json("Main") : displayRecord(display)["uuid"]},
         {"Current Space", {{"ManagedSpaceID", dice.oneOf(spaces)["ManagedSpaceID"]}}},
         {"Spaces", spaces}});
  }
  if (byPlace) {
    scenario["desktopsByPlace"] = true;
  }
  scenario["menuBarDisplay"] = dice.oneOf(scenario["managedDisplaySpaces"])["Display Identifier"];
}

void drawApplications(Dice& dice, Json& scenario, bool calm) {
  const int running = dice.pick(1, 5);
  for (int pid = 100; pid < 100 + running; ++pid) {
    const auto name = "App" + std::to_string(pid);
    Json application = {{"name", name}, {"pid", pid}, {"active", pid == 100}};
    if (dice.chance(90)) {
      application["bundleID"] = "org.example." + name;
    }
    if (!calm && dice.chance(25)) {
      application.update(
          dice.oneOf(Json::parse(R"([{"responseTime": null}, {"responseTime": 0.3}, {"refusesClose": true}])")));
    }
    scenario["applications"].push_back(std::move(application));
  }
  const int open = dice.pick(0, 10);
  for (int number = 10; number < 10 + open; ++number) {
    auto window = dice.fill(R"({"title": "$words", "frame": ["$x", "$y", "$side", "$side"], "space": "$space"})");
    window.update({{"number", number}, {"pid", 100 + dice.pick(0, running - 1)}, {"minimized", dice.chance(10)}});
    scenario["windows"].push_back(std::move(window));
  }
}

}  // namespace

Json displayRecord(int id) {
  constexpr int width = 1440;
  return {{"id", id},
          {"uuid", "D15B0000-0000-4000-8000-00000000000" + std::to_string(id)},
          {"bounds", {(id - 1) * width, 0, width, 900}},
          {"builtin", id == 1}};
}

Json drawDesktop(Dice& dice, bool calm) {
  auto scenario = dice.fill(basis);
  drawSpaces(dice, scenario);
  drawApplications(dice, scenario, calm);
  for (const auto& part : habits) {
    if (dice.chance(part.percent)) {
      add(dice, part, scenario);
    }
  }
  for (const auto& part : faults) {
    if (!calm && dice.chance(part.percent)) {
      add(dice, part, scenario);
    }
  }
  if (dice.chance(50)) {
    scenario["desktop"] = "asked";
  }
  return scenario;
}

}  // namespace tallowin
