// Scenario files, and the list of Spaces in them.

#include "platform/simulated/scenario.h"

#include <gtest/gtest.h>

#include "platform/simulated/raw_spaces.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;

TEST(ScenarioTest, mistakesAreNamedWithTheirPath) {
  struct Case {
    const char* text;
    const char* error;
  };
  const Case cases[] = {
      {"[]", "the scenario: expected an object, found a list"},
      {R"({"windos": []})", R"(unknown member "windos" in the scenario)"},
      {R"({"dock": {"switchTime": -1}})", "dock.switchTime: expected a number of seconds, found the number -1"},
      {R"({"timeZone": "Nowhere"})", "timeZone: no time zone has this name"},
      {R"({"systemVersion": "15."})", R"(systemVersion: expected a version such as "15.3.1", found a text)"},
      {R"({"connection": -1})", "connection: expected a whole number from 0 to 4294967295, found the number -1"},
      {R"({"missingFunctions": ["SLSGetActiveSpaces"]})",
       "missingFunctions[0]: expected the name of a private function, found a text"},
      {R"({"displays": [{"id": 1, "uuid": "", "bounds": [0, 0, 1]}]})",
       "displays[0].bounds: expected a rectangle [x, y, width, height], found a list"},
      {R"({"start": "2262-01-01T00:00:00Z"})",
       R"(start: expected a date from 1970 to 2100 such as "2026-03-02T09:00:00Z", found a text)"},
      {R"({"displays": [{"id": 1, "uuid": "", "bounds": [0, 0, 1e300, 1]}]})",
       "displays[0].bounds[2]: expected at most a million points, found the number 1e+300"},
      {R"({"displays": [{"id": 1, "uuid": "", "bounds": [0, 0, 20000, 1]}]})",
       "displays[0].bounds: a display has at most 10000 points a side"},
      {R"({"windows": [{"number": 7, "pid": 1}, {"number": 7, "pid": 1}]})",
       "windows: two elements have the same number"},
      {R"({"windows": [{"number": 7, "pid": 1, "space": 1, "spaces": [1]}]})",
       R"(windows[0].spaces: either "space" or "spaces", not both)"},
      {R"({"applications": [{"name": "Mail", "activationPolicy": "shy"}]})",
       R"(applications[0].activationPolicy: expected "regular", "accessory" or "prohibited", found a text)"},
      {R"({"takenHotKeys": [{"key": "ab"}]})",
       R"(takenHotKeys[0].key: expected a letter from "a" to "z" or a virtual key code, found a text)"},
      {R"({"applications": [{"name": "A", "responseTime": "slow"}]})",
       "applications[0].responseTime: expected a number of seconds, found a text"},
      {R"({"symbolicHotKeys": {"desk": null}})", "symbolicHotKeys.desk: its name is no number"},
      {R"({"files": {"relative": "text"}})", "files.relative: its name is no absolute path"},
      {R"({"files": {"~/a": {"base64": "%%%%"}}})", "files.~/a.base64: expected Base64, found a text"},
      {R"({"script": [{"at": 1, "do": "dance"}]})", R"(script[0].do: there is no action "dance")"},
      {R"({"script": [{"at": 1, "do": "quit", "now": true}]})", R"(unknown member "now" in script[0])"},
      {R"({"script": [{"at": 1, "do": "switchSpace"}]})", R"(script[0]: "space" is missing)"},
      {R"({"script": [{"at": 1, "do": "setPermission", "permission": "all", "allowed": true}]})",
       R"(script[0].permission: expected "accessibility" or "screenRecording", found a text)"},
      {R"({"script": [{"at": 1, "do": "jumpClock", "by": 1e300}]})",
       "script[0].by: expected at most a thousand million seconds, found the number 1e+300"},
  };
  for (const auto& [text, error] : cases) {
    const auto scenario = Scenario::parse(text);
    ASSERT_FALSE(scenario) << text;
    EXPECT_EQ(scenario.error(), error) << text;
  }
}

TEST(ScenarioTest, textThatIsNoJSONIsReportedWithItsPlace) {
  const auto broken = Scenario::parse("{\n  \"end\": 5,\n  \"start\" 7\n}");
  ASSERT_FALSE(broken);
  EXPECT_NE(broken.error().find("line 3, column"), std::string::npos) << broken.error();
  for (const auto& text : {std::string("\xFF"), std::string(100'000, '['),
                           std::string("{\"files\":{\"/\xC3\x28\":\"\"}}"), std::string(std::size_t{17} << 20, ' ')}) {
    EXPECT_FALSE(Scenario::parse(text)) << text.substr(0, 20);
  }
}

TEST(ScenarioTest, membersArriveWhereTheyBelong) {
  const auto scenario = Scenario::parse(R"({
    "start": "2026-07-01T22:30:00Z", "timeZone": "+02:00", "menuBarDisplay": null,
    "displays": [{"id": 1, "uuid": "A", "bounds": [100, 0, 10, 10]},
                 {"id": 2, "uuid": "B", "bounds": [0, 0, 100, 50], "main": true, "builtin": true, "name": "Lid"}],
    "applications": [{"pid": 9, "name": "Dock replacement", "bundleID": "com.apple.dock"}, {"name": "Installed"}],
    "symbolicHotKeys": {"118": null, "119": {"keyCode": 19, "modifiers": 262144, "enabled": false}},
    "files": {"~/a": "text", "/b": {"base64": "AP8=", "unwritable": true}, "/c": {"missing": true}},
    "dock": {"switchTime": 0.5, "bounces": {"count": 2, "after": 0.25}},
    "missionControl": {"hoverTime": 1}, "windowManager": {"name": "wm", "missingHints": ["_NET_A"]}})");
  ASSERT_TRUE(scenario) << scenario.error();
  const auto& desktop = scenario->desktop;
  EXPECT_EQ(scenario->clock.timeZone.localDay(scenario->clock.start), (CalendarDay{2026, 7, 2}));
  EXPECT_EQ(desktop.menuBarDisplay, std::nullopt);
  ASSERT_EQ(desktop.displays.size(), 2U);
  EXPECT_EQ(desktop.displays[0], (SimulatedDisplay{2, "B", "Lid", {{0, 0}, {100, 50}}, true}));
  EXPECT_EQ(desktop.applications.size(), 2U) << "a Dock that is listed is not added";
  EXPECT_EQ(desktop.hotKeys.at(119), (SymbolicHotKey{SymbolicHotKeyBinding{19, 262144}, false}));
  EXPECT_EQ(desktop.hotKeys.at(118), SymbolicHotKey());
  const std::vector<ScenarioFile> files = {
      {"/b", std::string("\0\xFF", 2), false, true}, {"/c", "", true, false}, {"/home/user/a", "text", false, false}};
  EXPECT_EQ(scenario->files, files);
  EXPECT_EQ(scenario->dock, (ScenarioDock{500ms, 2, 250ms}));
  EXPECT_EQ(desktop.windowManager, (WindowManagerFacts{"wm", "", {"_NET_A"}}));
  EXPECT_EQ(scenario->missionControl.hoverTime, 1s);
}

/// [1] 2 (full screen 9) on A, [3] on B, with entries among them that are no Spaces and no displays.
PropertyList malformedInPlaces() {
  return PropertyList::parse(R"([
    "no display",
    {"Display Identifier": "A", "Current Space": {"ManagedSpaceID": 1},
     "Spaces": [{"ManagedSpaceID": 1, "uuid": "U1"}, "no space", {"ManagedSpaceID": "2"}, {"ManagedSpaceID": 2},
                {"ManagedSpaceID": 9, "type": 4}]},
    {"Display Identifier": 5, "Spaces": []},
    {"Display Identifier": "B", "Current Space": {"ManagedSpaceID": 3}, "Spaces": [{"ManagedSpaceID": 3}]}])");
}

/// Each display with its Spaces: [active] and (full screen).
std::string picture(const RawSpaces& spaces) {
  std::string text;
  for (const auto& display : spaces.displays()) {
    text += display.id + " ";
    for (const auto& space : display.spaces) {
      const auto id = std::to_string(space.id);
      text += (display.current == space.id ? "[" + id + "]" : space.isFullscreen ? "(" + id + ")" : id) + " ";
    }
  }
  return text;
}

TEST(RawSpacesTest, readsAroundMalformedEntriesAndKeepsThemThroughChanges) {
  RawSpaces spaces(malformedInPlaces());
  EXPECT_EQ(picture(spaces), "A [1] 2 (9) B [3] ");

  EXPECT_TRUE(spaces.activate(9));
  auto expected = malformedInPlaces();
  expected[1]["Current Space"] = expected[1]["Spaces"][4];
  EXPECT_EQ(spaces.list(), expected);
  EXPECT_FALSE(spaces.activate(77));
  EXPECT_EQ(spaces.list(), expected);
}

TEST(RawSpacesTest, aDisplayThatComesBackGetsItsSpacesBack) {
  RawSpaces spaces(malformedInPlaces());
  spaces.activate(2);
  spaces.removeDisplay("A");
  EXPECT_TRUE(spaces.activate(1)) << "on B now";
  EXPECT_EQ(spaces.remove(9), 2) << "this one ends while its display is away";
  spaces.addDisplay("a");
  EXPECT_EQ(picture(spaces), "B [3] A 1 [2] ") << "under the name it had";

  // B's own desktop ends while A is away: B keeps one of those that it has inherited.
  spaces.removeDisplay("A");
  spaces.remove(3);
  spaces.addDisplay("A");
  EXPECT_EQ(picture(spaces), "B [2] A [1] ");

  spaces.removeDisplay("A");
  spaces.removeDisplay("B");
  EXPECT_TRUE(spaces.displays().empty());
  spaces.addDisplay("B");
  EXPECT_EQ(picture(spaces), "B [2] 1 ") << "they have waited";
}

TEST(RawSpacesTest, hugeIDsAndNoListAtAllAreBorne) {
  RawSpaces huge(PropertyList::parse(
      R"([{"Display Identifier": "A", "Spaces": [{"ManagedSpaceID": 9223372036854775807}, {"ManagedSpaceID": 18446744073709551615}]}])"));
  EXPECT_EQ(huge.displays()[0].spaces.size(), 1U);
  EXPECT_EQ(huge.addDesktop("A"), 1);
  for (const auto* text : {"null", "5", "{}", R"("text")"}) {
    RawSpaces none(PropertyList::parse(text));
    EXPECT_TRUE(none.displays().empty());
    EXPECT_FALSE(none.activate(1));
    EXPECT_EQ(none.remove(1), std::nullopt);
    EXPECT_EQ(none.addDesktop("A"), std::nullopt);
  }
}

}  // namespace
}  // namespace tallowin
