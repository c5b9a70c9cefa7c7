#include "platform/simulated/scenario.h"

#include <algorithm>
#include <ranges>

#include "base/date_text.h"
#include "base/json_text.h"
#include "base/preferences.h"
#include "base/words.h"
#include "platform/simulated/scenario_records.h"
#include "platform/simulated/simulated_files.h"
#include "platform/simulated/simulated_loader.h"

namespace tallowin {

void readValue(const ScenarioValue& from, OperatingSystemVersion& version) {
  const auto text = from.as<std::string>();
  std::vector<std::int64_t> numbers;
  for (const auto part : std::views::split(text, '.')) {
    numbers.push_back(decimalInteger({part.begin(), part.end()}).value_or(-1));
  }
  const auto isNumber = [](std::int64_t number) { return number >= 0 && std::in_range<int>(number); };
  if (numbers.empty() || numbers.size() > 3 || !std::ranges::all_of(numbers, isNumber)) {
    from.expected("a version such as \"15.3.1\"");
  }
  numbers.resize(3);
  version = {static_cast<int>(numbers[0]), static_cast<int>(numbers[1]), static_cast<int>(numbers[2])};
}

void readValue(const ScenarioValue& from, TimeZone& timeZone) {
  auto zone = TimeZone::named(from.as<std::string>());
  if (!zone) {
    from.fail(zone.error());
  }
  timeZone = std::move(zone).value_or(TimeZone());
}

void readValue(const ScenarioValue& from, RawSpaces& spaces) {
  spaces = RawSpaces(from.json());
}

void readRecord(ScenarioObject& from, std::pair<VirtualKeyCode, std::uint64_t>& takenHotKey) {
  takenHotKey.first = from.require("key").as<KeyRecord>().code;
  from.read("modifiers", takenHotKey.second);
}

void readRecord(ScenarioObject& from, WindowManagerFacts& manager) {
  from.require("name", manager.name);
  from.read("version", manager.version);
  from.read("missingHints", manager.missingHints);
}

void readRecord(ScenarioObject& from, SimulatedChild& program) {
  from.read("output", program.output);
  from.read("missing", program.missing);
}

void readRecord(ScenarioObject& from, ScenarioDock& dock) {
  from.read("switchTime", dock.switchTime);
  if (const auto bounces = from.find("bounces")) {
    ScenarioObject members(*bounces);
    dock.bounces = members.require("count").as<std::uint16_t>();
    members.read("after", dock.bounceAfter);
  }
}

void readRecord(ScenarioObject& from, MissionControlBehaviour& behaviour) {
  from.read("openingTime", behaviour.openingTime);
  from.read("hoverTime", behaviour.hoverTime);
  from.read("opens", behaviour.opens);
  from.read("addButton", behaviour.hasAddButton);
  from.read("closeButtons", behaviour.hasCloseButtons);
}

namespace {

constexpr std::size_t largestFile = std::size_t{16} << 20;
constexpr Duration afterTheScript = std::chrono::seconds{5};

/// Notes when two elements of a list have the same number.
template <typename Record, typename Number>
void checkDistinct(const ScenarioValue& list, const std::vector<Record>& records, Number Record::* number) {
  std::set<Number> seen;
  for (const auto& record : records) {
    if (!seen.insert(record.*number).second) {
      list.fail("two elements have the same number");
    }
  }
}

/// The member's list of names, all of which are known; "all" stands for all of them.
void readNames(ScenarioObject& from, std::string_view member, const NameSet& known, std::string_view what,
               NameSet& names) {
  const auto value = from.find(member);
  if (!value || value->json() == "all") {
    names = value ? known : NameSet();
    return;
  }
  for (const auto& element : value->list()) {
    const auto name = element.as<std::string>();
    if (!known.contains(name)) {
      element.expected(what);
    }
    names.insert(name);
  }
}

void readStart(const ScenarioValue& value, Scenario& scenario) {
  // Far from the ends of what a date can hold, whatever the clock does from there.
  static const auto earliest = dateFromISO8601("1970-01-01T00:00:00Z");
  static const auto latest = dateFromISO8601("2100-01-01T00:00:00Z");
  const auto date = value.isText() ? dateFromISO8601(value.as<std::string>()) : std::nullopt;
  if (!date || date < earliest || date > latest) {
    value.expected("a date from 1970 to 2100 such as \"2026-03-02T09:00:00Z\"");
  }
  scenario.clock.start = date.value_or(scenario.clock.start);
}

void readSpaces(ScenarioObject& from, Scenario& scenario) {
  auto& desktop = scenario.desktop;
  from.read("managedDisplaySpaces", desktop.spaces);
  if (const auto kind = from.find("desktop")) {
    desktop.isAsked = kind->oneOf<bool>({{"driven", false}, {"asked", true}});
  }
  RequestRecord requests;
  from.read("requests", requests);
  requests.applyTo(desktop.requests);
  from.read("desktopsByPlace", desktop.desktopsByPlace);
  if (const auto display = from.find("menuBarDisplay")) {
    desktop.menuBarDisplay = display->as<Nullable<std::string>>().value;
  }
  readNames(from, "missingFunctions", SimulatedLoader::everything(), "the name of a private function",
            scenario.missingFunctions);
  from.read("notificationFailures", scenario.notificationFailures);
}

/// Windows come after what decides on the Spaces that they are on.
void readWindows(ScenarioObject& from, DesktopState& desktop) {
  if (const auto list = from.find("displays")) {
    desktop.displays.clear();
    for (const auto& record : list->as<std::vector<DisplayRecord>>()) {
      desktop.displays.insert(record.main ? desktop.displays.begin() : desktop.displays.end(), record.display);
    }
    checkDistinct(*list, desktop.displays, &SimulatedDisplay::id);
  }
  if (const auto list = from.find("applications")) {
    desktop.applications = list->as<std::vector<SimulatedApplication>>();
  }
  if (const auto list = from.find("windows")) {
    for (const auto& record : list->as<std::vector<WindowRecord>>()) {
      desktop.windows.push_back(record.placedIn(desktop));
    }
    checkDistinct(*list, desktop.windows, &SimulatedWindow::number);
  }
}

void readHotKeys(ScenarioObject& from, DesktopState& desktop) {
  const auto table = from.find("symbolicHotKeys");
  for (const auto& [key, entry] : table ? table->entries() : decltype(table->entries())()) {
    const auto number = decimalInteger(key).value_or(-1);
    if (!std::in_range<int>(number) || number < 0) {
      entry.fail("its name is no number");
    }
    desktop.hotKeys[static_cast<int>(number)] = entry.as<Nullable<SymbolicHotKey>>().value.value_or(SymbolicHotKey());
  }
  from.read("takenHotKeys", desktop.takenHotKeys);
}

void readUser(ScenarioObject& from, Scenario& scenario) {
  auto& desktop = scenario.desktop;
  if (const auto permissions = from.find("permissions")) {
    ScenarioObject object(*permissions);
    object.read("accessibility", desktop.accessibilityAllowed);
    object.read("screenRecording", desktop.screenRecordingAllowed);
  }
  from.read("screenLocked", desktop.screenLocked);
  from.read("preferences", scenario.preferences);
  from.read("globalPreferences", desktop.globalPreferences);
  if (const auto natural = from.find("naturalScrolling")) {
    desktop.globalPreferences[scrollingDirectionPreference] = natural->as<bool>();
  }
  from.read("pointer", desktop.pointer);
  from.read("pressedMouseButtons", desktop.pressedMouseButtons);
  readHotKeys(from, desktop);
}

void readFiles(const ScenarioValue& value, std::vector<ScenarioFile>& files) {
  for (const auto& [path, entry] : value.entries()) {
    ScenarioFile file{simulatedPath(path), ""};
    if (file.path.empty()) {
      entry.fail("its name is no absolute path");
    }
    if (entry.isText()) {
      entry.into(file.bytes);
    } else {
      ScenarioObject object(entry);
      BytesRecord content;
      readRecord(object, content);
      file.bytes = content.bytes;
      object.read("missing", file.missing);
      object.read("unwritable", file.unwritable);
    }
    files.push_back(std::move(file));
  }
}

void readMachine(ScenarioObject& from, Scenario& scenario) {
  auto& desktop = scenario.desktop;
  from.read("takenPorts", desktop.takenPorts);
  from.read("windowManager", desktop.windowManager);
  readNames(
      from, "ignoredMoves",
      {"SLSBridgedMoveWindowsToManagedSpaceOperation", "SLSMoveWindowsToManagedSpace", "SLSSetWindowListWorkspace"},
      "the name of a function that moves windows", desktop.ignoredMoves);
  if (const auto trackpads = from.find("trackpads")) {
    constexpr int most = 16;
    const auto count = trackpads->as<int>();
    if (count < 0 || count > most) {
      trackpads->expected("a number of trackpads up to 16");
    }
    desktop.trackpads = std::clamp(count, 0, most);
  }
  if (const auto files = from.find("files")) {
    readFiles(*files, scenario.files);
  }
  if (const auto disk = from.find("disk")) {
    ScenarioObject(*disk).read("full", scenario.diskFull);
  }
  from.read("programs", desktop.programs);
  from.read("appleScripts", desktop.appleScripts);
  from.read("dock", scenario.dock);
  from.read("missionControl", scenario.missionControl);
}

void readScript(const ScenarioValue& value, Scenario& scenario) {
  for (const auto& element : value.list()) {
    ScenarioObject object(element);
    ScriptEntry entry;
    object.require("at", entry.at);
    const auto name = object.require("do");
    auto action = readScriptAction(name.as<std::string>(), object);
    if (!action) {
      name.fail("there is no action " + PropertyList(name.as<std::string>()).dump());
      return;
    }
    entry.perform = std::move(*action);
    entry.journalled = element.json();
    entry.journalled.erase("at");
    scenario.end = std::max(scenario.end, entry.at + afterTheScript);
    scenario.script.push_back(std::move(entry));
  }
}

/// A later member may look at what an earlier one has set.
void readScenario(ScenarioObject& from, Scenario& scenario) {
  if (const auto start = from.find("start")) {
    readStart(*start, scenario);
  }
  from.read("timeZone", scenario.clock.timeZone);
  from.read("uptime", scenario.clock.uptime);
  from.read("systemVersion", scenario.desktop.systemVersion);
  from.read("processID", scenario.desktop.ownProcess);
  from.read("connection", scenario.desktop.connection);
  readSpaces(from, scenario);
  readWindows(from, scenario.desktop);
  readUser(from, scenario);
  readMachine(from, scenario);
  if (const auto script = from.find("script")) {
    readScript(*script, scenario);
  }
  from.read("end", scenario.end);
}

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
    readScenario(object, scenario);
  }
  if (!mistake.empty()) {
    return std::unexpected(std::move(mistake));
  }
  addDock(scenario.desktop);
  return scenario;
}

}  // namespace tallowin
