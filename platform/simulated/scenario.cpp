#include "platform/simulated/scenario.h"

#include <algorithm>
#include <charconv>

#include "base/date_text.h"
#include "base/json_text.h"
#include "platform/simulated/scenario_records.h"
#include "platform/simulated/scenario_value.h"
#include "platform/simulated/script_actions.h"
#include "platform/simulated/simulated_loader.h"

namespace tallowin {

namespace {

constexpr std::size_t largestFile = std::size_t{16} << 20;
constexpr auto naturalScrollingKey = "com.apple.swipescrolldirection";
constexpr Duration afterTheScript = std::chrono::seconds{5};

using Value = ScenarioValue;

/// The key of an entry as a number, where keys are numbers.
template <typename Integer>
Integer numberIn(const std::string& key, const Value& value) {
  Integer number = 0;
  const auto [end, error] = std::from_chars(key.data(), key.data() + key.size(), number);
  if (error != std::errc() || end != key.data() + key.size()) {
    value.fail("its name is no number");
  }
  return number;
}

/// Notes when two elements of a list have the same number.
template <typename Record, typename Number>
void checkDistinct(const Value& list, const std::vector<Record>& records, Number Record::* number) {
  std::set<Number> seen;
  for (const auto& record : records) {
    if (!seen.insert(record.*number).second) {
      list.fail("two elements have the same number");
    }
  }
}

void readStart(const Value& value, Scenario& scenario) {
  // Far from the ends of what a date can hold, whatever the clock does from there.
  static const auto earliest = dateFromISO8601("1970-01-01T00:00:00Z");
  static const auto latest = dateFromISO8601("2100-01-01T00:00:00Z");
  const auto date = value.isText() ? dateFromISO8601(value.text()) : std::nullopt;
  if (!date || date < earliest || date > latest) {
    value.expected("a date from 1970 to 2100 such as \"2026-03-02T09:00:00Z\"");
  }
  scenario.clock.start = date.value_or(scenario.clock.start);
}

void readTimeZone(const Value& value, Scenario& scenario) {
  auto zone = TimeZone::named(value.text());
  if (!zone) {
    value.fail(zone.error());
  }
  scenario.clock.timeZone = std::move(zone).value_or(TimeZone());
}

void readSystemVersion(const Value& value, Scenario& scenario) {
  const auto text = value.text();
  int numbers[3] = {};
  const char* at = text.data();
  const char* const end = at + text.size();
  bool valid = !text.empty();
  for (std::size_t i = 0; i < std::size(numbers) && valid && at != end; ++i) {
    const auto [next, error] = std::from_chars(at, end, numbers[i]);
    valid = error == std::errc() && numbers[i] >= 0 && (next == end || (*next == '.' && next + 1 != end));
    at = next == end ? end : next + 1;
  }
  if (!valid || at != end) {
    value.expected("a version such as \"15.3.1\"");
  }
  scenario.desktop.systemVersion = {numbers[0], numbers[1], numbers[2]};
}

void readManagedDisplaySpaces(const Value& value, Scenario& scenario) {
  scenario.desktop.spaces = RawSpaces(value.json());
}

void readKind(const Value& value, Scenario& scenario) {
  constexpr std::pair<std::string_view, bool> kinds[] = {{"driven", false}, {"asked", true}};
  scenario.desktop.isAsked = value.oneOf(kinds);
}

void readRequests(const Value& value, Scenario& scenario) {
  ScenarioObject object(value);
  readRequests(object).applyTo(scenario.desktop.requests);
}

void readMenuBarDisplay(const Value& value, Scenario& scenario) {
  scenario.desktop.menuBarDisplay = value.isNull() ? std::nullopt : std::optional(value.text());
}

void readMissingFunctions(const Value& value, Scenario& scenario) {
  if (value.isText() && value.text() == "all") {
    scenario.missingFunctions = SimulatedLoader::everything();
    return;
  }
  for (const auto& element : value.list()) {
    const auto name = element.text();
    if (!SimulatedLoader::knows(name)) {
      element.expected("the name of a private function");
    }
    scenario.missingFunctions.insert(name);
  }
}

void readDisplays(const Value& value, Scenario& scenario) {
  auto& displays = scenario.desktop.displays;
  displays.clear();
  for (const auto& element : value.list()) {
    ScenarioObject object(element);
    auto record = readDisplay(object);
    displays.insert(record.main ? displays.begin() : displays.end(), std::move(record.display));
  }
  checkDistinct(value, displays, &SimulatedDisplay::id);
}

void readApplications(const Value& value, Scenario& scenario) {
  auto& applications = scenario.desktop.applications;
  applications.clear();
  for (const auto& element : value.list()) {
    ScenarioObject object(element);
    applications.push_back(readApplication(object));
  }
}

void readPermissions(const Value& value, Scenario& scenario) {
  ScenarioObject object(value);
  object.read("accessibility", scenario.desktop.accessibilityAllowed);
  object.read("screenRecording", scenario.desktop.screenRecordingAllowed);
}

void readPreferences(const Value& value, Scenario& scenario) {
  for (const auto& [key, preference] : value.entries()) {
    scenario.preferences[key] = preference.json();
  }
}

void readGlobalPreferences(const Value& value, Scenario& scenario) {
  for (const auto& [key, preference] : value.entries()) {
    scenario.desktop.globalPreferences[key] = preference.json();
  }
}

void readSymbolicHotKeys(const Value& value, Scenario& scenario) {
  for (const auto& [key, entry] : value.entries()) {
    HotKeyRecord record;
    if (!entry.isNull()) {
      ScenarioObject object(entry);
      record = readHotKey(object);
    }
    record.applyTo(scenario.desktop.hotKeys, numberIn<int>(key, entry));
  }
}

void readFiles(const Value& value, Scenario& scenario) {
  for (const auto& [path, entry] : value.entries()) {
    ScenarioFile file;
    // The path is a name here; reading it as a value gives the same messages as elsewhere.
    const PropertyList name = path;
    ScenarioMistake mistake;
    file.path = readPath({name, entry.path(), mistake});
    if (!mistake.empty()) {
      entry.fail("its name is no absolute path");
    }
    if (entry.isText()) {
      file.bytes = entry.text();
    } else {
      ScenarioObject object(entry);
      file.bytes = readBytes(object);
      object.read("missing", file.missing);
      object.read("unwritable", file.unwritable);
    }
    scenario.files.push_back(std::move(file));
  }
}

void readDisk(const Value& value, Scenario& scenario) {
  ScenarioObject(value).read("full", scenario.diskFull);
}

void readDock(const Value& value, Scenario& scenario) {
  ScenarioObject object(value);
  object.read("switchTime", scenario.dock.switchTime);
  if (const auto bounces = object.find("bounces")) {
    ScenarioObject members(*bounces);
    scenario.dock.bounces = members.require("count").integer<std::uint16_t>();
    members.read("after", scenario.dock.bounceAfter);
  }
}

void readMissionControl(const Value& value, Scenario& scenario) {
  ScenarioObject object(value);
  auto& behaviour = scenario.missionControl;
  object.read("openingTime", behaviour.openingTime);
  object.read("hoverTime", behaviour.hoverTime);
  object.read("opens", behaviour.opens);
  object.read("addButton", behaviour.hasAddButton);
  object.read("closeButtons", behaviour.hasCloseButtons);
}

void readIgnoredMoves(const Value& value, Scenario& scenario) {
  static constexpr std::string_view moves[] = {"SLSBridgedMoveWindowsToManagedSpaceOperation",
                                               "SLSMoveWindowsToManagedSpace", "SLSSetWindowListWorkspace"};
  auto& ignored = scenario.desktop.ignoredMoves;
  if (value.isText() && value.text() == "all") {
    ignored = {std::begin(moves), std::end(moves)};
    return;
  }
  for (const auto& element : value.list()) {
    const auto name = element.text();
    if (std::ranges::find(moves, name) == std::end(moves)) {
      element.expected("the name of a function that moves windows");
    }
    ignored.insert(name);
  }
}

void readWindowManager(const Value& value, Scenario& scenario) {
  ScenarioObject object(value);
  auto& manager = scenario.desktop.windowManager.emplace();
  manager.name = object.require("name").text();
  object.read("version", manager.version);
  object.read("missingHints", manager.missingHints);
}

void readTakenHotKeys(const Value& value, Scenario& scenario) {
  for (const auto& element : value.list()) {
    ScenarioObject object(element);
    const auto key = readKey(object.require("key"));
    const auto modifiers = object.find("modifiers");
    scenario.desktop.takenHotKeys.insert({key, modifiers ? modifiers->integer<std::uint64_t>() : 0});
  }
}

void readPrograms(const Value& value, Scenario& scenario) {
  for (const auto& [path, entry] : value.entries()) {
    ScenarioObject object(entry);
    object.read("output", scenario.desktop.programs[path].output);
    object.read("missing", scenario.desktop.programs[path].missing);
  }
}

void readAppleScripts(const Value& value, Scenario& scenario) {
  for (const auto& [source, result] : value.entries()) {
    result.into(scenario.desktop.appleScripts[source]);
  }
}

void readTrackpads(const Value& value, Scenario& scenario) {
  constexpr int most = 16;
  const auto count = value.integer<int>();
  if (count < 0 || count > most) {
    value.expected("a number of trackpads up to 16");
  }
  scenario.desktop.trackpads = std::clamp(count, 0, most);
}

/// Windows come after what decides on the Spaces that they are on.
void readWindows(const Value& value, Scenario& scenario) {
  auto& windows = scenario.desktop.windows;
  windows.clear();
  for (const auto& element : value.list()) {
    ScenarioObject object(element);
    windows.push_back(readWindow(object).placedIn(scenario.desktop));
  }
  checkDistinct(value, windows, &SimulatedWindow::number);
}

void readScript(const Value& value, Scenario& scenario) {
  for (const auto& element : value.list()) {
    ScenarioObject object(element);
    ScriptEntry entry;
    entry.at = object.require("at").seconds();
    const auto name = object.require("do");
    auto action = readScriptAction(name.text(), object);
    if (!action) {
      name.fail("there is no action " + PropertyList(name.text()).dump());
      return;
    }
    entry.perform = std::move(*action);
    entry.journalled = element.json();
    entry.journalled.erase("at");
    scenario.end = std::max(scenario.end, entry.at + afterTheScript);
    scenario.script.push_back(std::move(entry));
  }
}

/// A reader of a member that is just a value of the machine's state.
template <auto member>
void state(const Value& value, Scenario& scenario) {
  value.into(scenario.desktop.*member);
}

struct Member {
  const char* name;
  void (*read)(const Value&, Scenario&);
};

// In the order in which they are read: a later one may look at what an earlier one has set.
constexpr Member members[] = {
    {"start", readStart},
    {"timeZone", readTimeZone},
    {"uptime", [](const Value& value, Scenario& scenario) { value.into(scenario.clock.uptime); }},
    {"systemVersion", readSystemVersion},
    {"processID", state<&DesktopState::ownProcess>},
    {"connection", state<&DesktopState::connection>},
    {"managedDisplaySpaces", readManagedDisplaySpaces},
    {"desktop", readKind},
    {"requests", readRequests},
    {"desktopsByPlace", state<&DesktopState::desktopsByPlace>},
    {"menuBarDisplay", readMenuBarDisplay},
    {"missingFunctions", readMissingFunctions},
    {"notificationFailures", [](const Value& value, Scenario& scenario) { value.into(scenario.notificationFailures); }},
    {"displays", readDisplays},
    {"applications", readApplications},
    {"windows", readWindows},
    {"permissions", readPermissions},
    {"screenLocked", state<&DesktopState::screenLocked>},
    {"preferences", readPreferences},
    {"globalPreferences", readGlobalPreferences},
    {"naturalScrolling",
     [](const Value& value, Scenario& scenario) {
       scenario.desktop.globalPreferences[naturalScrollingKey] = value.boolean();
     }},
    {"pointer", state<&DesktopState::pointer>},
    {"pressedMouseButtons", state<&DesktopState::pressedMouseButtons>},
    {"symbolicHotKeys", readSymbolicHotKeys},
    {"takenHotKeys", readTakenHotKeys},
    {"takenPorts", state<&DesktopState::takenPorts>},
    {"windowManager", readWindowManager},
    {"ignoredMoves", readIgnoredMoves},
    {"trackpads", readTrackpads},
    {"files", readFiles},
    {"disk", readDisk},
    {"programs", readPrograms},
    {"appleScripts", readAppleScripts},
    {"dock", readDock},
    {"missionControl", readMissionControl},
    {"script", readScript},
    {"end", [](const Value& value, Scenario& scenario) { value.into(scenario.end); }},
};

/// What a simulated machine is like when the scenario does not say.
Scenario defaults() {
  Scenario scenario;
  auto& desktop = scenario.desktop;
  desktop.displays = {{1, "37D8832A-2D66-02CA-B9F7-8F30A301B230", "Built-in Display", {{0, 0}, {1440, 900}}, true}};
  desktop.menuBarDisplay = "Main";
  desktop.pointer = {720, 450};
  desktop.applications = {
      {350, "com.apple.finder", "Finder", ActivationPolicy::regular, true, false},
  };
  return scenario;
}

/// The Dock is part of the system: it runs whether the scenario lists it or not.
void addDock(DesktopState& desktop) {
  constexpr auto bundle = "com.apple.dock";
  const bool listed = std::ranges::any_of(desktop.applications, [&](const SimulatedApplication& application) {
    return application.bundleIdentifier == bundle;
  });
  if (!listed) {
    ProcessID pid = 300;
    while (desktop.application(pid) != nullptr) {
      ++pid;
    }
    desktop.applications.push_back({pid, bundle, "Dock", ActivationPolicy::accessory, false, false});
  }
}

}  // namespace

std::expected<Scenario, std::string> Scenario::parse(std::string_view text) {
  if (text.size() > largestFile) {
    return std::unexpected("the scenario is larger than 16 MiB");
  }
  const auto json = parseJSON(text);
  if (!json) {
    return std::unexpected(json.error());
  }
  ScenarioMistake mistake;
  Scenario scenario = defaults();
  {
    ScenarioObject object(ScenarioValue(*json, "", mistake));
    for (const auto& [name, read] : members) {
      if (const auto member = object.find(name)) {
        read(*member, scenario);
      }
    }
  }
  if (!mistake.empty()) {
    return std::unexpected(std::move(mistake));
  }
  addDock(scenario.desktop);
  return scenario;
}

}  // namespace tallowin
