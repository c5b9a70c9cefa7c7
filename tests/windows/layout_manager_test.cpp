// What layouts are made of: records, file names, matching, sets of displays, and where windows go before unplugging;
// and who is told when one is restored.

#include "windows/layout_manager.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/json_text.h"
#include "tests/windows/windows_program.h"
#include "windows/window_layout.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto oneWindow = R"({"applications": [{"name": "A", "pid": 11, "bundleID": "app.a"}],
  "windows": [{"number": 101, "pid": 11, "space": 1}]})";

TEST(LayoutManager, CompletesOnceAndNeverInsideTheCall) {
  WindowsProgram program(oneWindow);
  const auto layout = program.layouts->capture("manual", program.snapshot());
  auto fullscreen = program.snapshot();
  for (auto& space : fullscreen.displays.at(0).spaces) {
    space.isFullscreen = true;
  }
  program.state().window(101)->spaces = {4};
  program.readWindows();
  std::vector<std::string> told;
  program.layouts->restore({}, program.snapshot(),
                           [&](auto moved) { told.push_back("none " + std::to_string(moved)); });
  program.layouts->restore(layout, fullscreen, [&](auto moved) { told.push_back("refused " + std::to_string(moved)); });
  EXPECT_THAT(told, IsEmpty());
  program.time.advance(0s);
  EXPECT_THAT(told, ElementsAre("none 0", "refused 0"));
  program.layouts->restore(layout, program.snapshot(), [&](auto /*moved*/) { told.emplace_back("destroyed"); });
  program.layouts.reset();
  program.time.advance(1s);
  EXPECT_EQ(told.size(), 2U) << "a manager that has gone tells nobody";
}

std::string repeated(std::string_view text, int times) {
  return times == 0 ? "" : repeated(text, times - 1).append(text);
}

TEST(LayoutFileName, KeepsWhatFitsAndCutsWhatDoesNot) {
  EXPECT_EQ(layoutFileName("a/b", "A/1+B"), "a-b--A-1+B.json");
  // "n--" and 117 characters are as much as is kept, however many bytes each takes.
  for (const std::string_view character : {"x", "ä", "語", "🖥", "\xff", "\xe2\x82"}) {
    const int units = character == "\xe2\x82" ? 2 : 1;  // the beginning of a character is as many as it has bytes
    const auto fits = repeated(character, 117 / units);
    const auto tooLong = repeated(character, 118 / units + 1);
    EXPECT_EQ(layoutFileName("n", fits), "n--" + fits + ".json") << character;
    const auto cut = layoutFileName("n", tooLong);
    const auto kept = "n--" + repeated(character, 57 / units);
    EXPECT_TRUE(cut.starts_with(kept)) << cut;
    EXPECT_NE(cut, layoutFileName("n", tooLong + "y")) << "not taken for another";
    EXPECT_NE(cut, earlierLayoutFileName("n", tooLong));
    EXPECT_LE(cut.size(), kept.size() + character.size() + 20 + 5) << "the rest is a number and \".json\"";
  }
  EXPECT_EQ(layoutFileName("n", std::string(200, 'x')), "n--" + std::string(57, 'x') + "18165280817657860219.json");
}

TEST(LayoutManager, AFileUnderItsEarlierNameIsTakenOver) {
  WindowsProgram program(oneWindow);
  const std::string setup(200, 'x');
  const auto earlier = layoutFolder + earlierLayoutFileName("manual", setup);
  auto layout = program.layouts->capture("manual", program.snapshot());
  layout.displaySetup = setup;
  program.files().overwrite(earlier, toJson(layout).dump());
  for (int i = 0; i < 2; ++i) {
    const auto loaded = program.layouts->load("manual", setup);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->entries, layout.entries);
    EXPECT_EQ(program.fileText(earlier), "none");
  }
}

WindowInfo window(WindowNumber id, std::optional<std::string> bundleID, std::string title) {
  return {id, 7, std::move(bundleID), "App", std::move(title), {}, 1};
}

TEST(MatchLayout, PrefersTitlesAndTakesEachEntryOnce) {
  struct Case {
    const char* what;
    std::vector<WindowInfo> windows;
    std::vector<std::pair<const char*, const char*>> entries;  // application, title
    std::vector<LayoutMatch> matches;
  };
  const Case cases[] = {
      {"titles decide, an untitled window takes what is left",
       {window(1, "a", "X"), window(2, "a", "Y"), window(3, "a", "")},
       {{"a", "Y"}, {"a", "X"}, {"a", "Z"}},
       {{0, 1}, {1, 0}, {2, 2}}},
      {"an earlier window may take the title of a later one",
       {window(1, "a", "new"), window(2, "a", "X")},
       {{"a", "X"}, {"a", "Y"}},
       {{0, 0}, {1, 1}}},
      {"an untitled entry is no match of titles", {window(1, "a", "")}, {{"a", "T"}, {"a", ""}}, {{0, 0}}},
      {"applications keep to themselves", {window(1, "b", "X"), window(2, std::nullopt, "X")}, {{"a", "X"}}, {}},
      {"more windows than entries", {window(1, "a", ""), window(2, "a", "")}, {{"a", ""}}, {{0, 0}}},
      {"nothing", {}, {}, {}},
  };
  for (const auto& [what, windows, pairs, matches] : cases) {
    std::vector<WindowLayout::Entry> entries;
    for (const auto& [bundleID, title] : pairs) {
      entries.push_back({bundleID, title, {}, "", ""});
    }
    EXPECT_EQ(matchLayout(windows, entries), matches) << what;
  }
}

constexpr auto goodLayout = R"({"name": "auto", "savedAt": "2026-03-02T09:00:00Z", "displaySetup": "A+B",
  "entries": [{"bundleID": "a", "title": "T", "frame": [[1, -2.5], [300, 4]], "spaceUUID": "S", "displayID": "D"}]})";

TEST(WindowLayout, ReadsWhatItWritesAndWhatNewerVersionsAdd) {
  auto json = *parseJSON(goodLayout);
  const auto layout = layoutFromJson(json);
  ASSERT_TRUE(layout);
  EXPECT_EQ(toJson(*layout), json);
  EXPECT_EQ(layout->entries.at(0), (WindowLayout::Entry{"a", "T", {{1, -2.5}, {300, 4}}, "S", "D"}));
  json["version"] = 2;
  json["entries"][0]["opacity"] = 0.5;
  EXPECT_EQ(layoutFromJson(json), layout);
  json.erase("entries");
  EXPECT_THAT(layoutFromJson(json)->entries, IsEmpty());
}

DisplaySpaces display(std::string id, ManagedSpaceID first, const std::string& kinds) {
  DisplaySpaces result;
  result.id = std::move(id);
  for (const char kind : kinds) {
    Space space;
    space.managedID = first++;
    space.isFullscreen = kind == 'f';
    result.spaces.push_back(space);
  }
  return result;
}

TEST(PlanEjection, SpacesGoWhereTheirPositionIsOrToTheLastOne) {
  struct Case {
    const char* home;
    const char* other;
    std::vector<std::pair<ManagedSpaceID, ManagedSpaceID>> plan;
  };
  const Case cases[] = {
      {"dd", "dddd", {{11, 1}, {12, 2}, {13, 2}, {14, 2}}},
      {"fdfd", "dfd", {{11, 2}, {13, 4}}},  // full-screen Spaces neither send nor receive, nor count as positions
      {"ff", "dd", {}},
      {"d", "", {}},
  };
  for (const auto& [home, other, plan] : cases) {
    const SpaceSnapshot snapshot{{display("other", 11, other), display("home", 1, home)}, {}};
    std::vector<std::pair<ManagedSpaceID, ManagedSpaceID>> planned;
    for (const auto& [from, to] : planEjection(snapshot, snapshot.displays[1])) {
      planned.emplace_back(from.managedID, to.managedID);
    }
    EXPECT_EQ(planned, plan) << home << " " << other;
  }
}

TEST(HomeDisplay, IsTheBuiltInOneElseTheOneWithTheMenuBar) {
  const std::string lid = "11111111-1111-4111-8111-111111111111";
  SimulatedProgram program(R"({"displays": [{"id": 2, "uuid": ")" + lid +
                           R"(", "bounds": [0, 0, 8, 6], "builtin": true}]})");
  SpaceSnapshot snapshot;
  snapshot.displays = {display("first", 1, "d"), display("with the menu bar", 2, "d"), display(lid, 3, "d")};
  snapshot.displays[1].isMenuBarDisplay = true;
  EXPECT_EQ(homeDisplay(program.desktop.displays(), snapshot)->id, lid);
  snapshot.displays.pop_back();
  EXPECT_EQ(homeDisplay(program.desktop.displays(), snapshot)->id, "with the menu bar");
  EXPECT_EQ(homeDisplay(program.desktop.displays(), SpaceSnapshot::empty()), std::nullopt);
}

TEST(PlanEjection, GathersWindowsOnTheMonitorThatStays) {
  // panel: 800 x 600, of which 570 are free        external: 1600 x 900 to the right of it
  const std::vector<Monitor> docked = {{"HDMI-1", {{800, 0}, {1600, 900}}, {{800, 0}, {1600, 900}}, false, true},
                                       {"eDP-1", {{0, 0}, {800, 600}}, {{0, 30}, {800, 570}}, true, false}};
  auto desk = docked;
  desk[1].isBuiltIn = false;
  auto mirrored = docked;
  mirrored[0].bounds = mirrored[0].workArea = {{0, 0}, {800, 600}};
  const CGRect far{{900, 100}, {300, 200}};
  const CGRect stays{};
  const struct {
    const char* what;
    const std::vector<Monitor>& monitors;
    CGRect frame, planned;
  } cases[] = {
      {"keeps its place in the work area", docked, far, {{100, 130}, {300, 200}}},
      {"is moved inside", docked, {{2000, 800}, {300, 200}}, {{500, 400}, {300, 200}}},
      {"is made smaller", docked, {{800, 0}, {1600, 900}}, {{0, 30}, {800, 570}}},
      {"mostly at home", docked, {{600, 100}, {300, 200}}, stays},
      {"nowhere", docked, {{9000, 100}, {300, 200}}, stays},
      {"no panel: at home on the primary one", desk, far, stays},
      {"no panel", desk, {{10, 40}, {300, 200}}, {{810, 10}, {300, 200}}},
      {"one shows what the other does", mirrored, {{10, 40}, {300, 200}}, stays},
      {"no monitor", {}, far, stays},
  };
  for (const auto& [what, monitors, frame, planned] : cases) {
    WindowInfo window;
    window.frame = frame;
    const auto plan = planEjection({window}, monitors);
    EXPECT_EQ(plan.empty() ? stays : plan.at(0).frame, planned) << what;
  }
}

TEST(ConnectedDisplays, AreSortedSoThatTheirKeyDoesNotDependOnTheOrder) {
  SimulatedProgram program(R"({"displays": []})");
  SpaceSnapshot snapshot;
  snapshot.displays = {display("B", 1, "d"), display("a", 2, "d"), display("A", 3, "d")};
  const auto set = connectedDisplays(program.desktop.displays(), snapshot);
  EXPECT_EQ(displaySetKey(set), "A+B+a");
  EXPECT_EQ(displaySetKey({}), "");
}

}  // namespace
}  // namespace tallowin
