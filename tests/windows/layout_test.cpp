// What layouts are made of: records, file names, matching, sets of displays, and where windows go before unplugging.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/json_text.h"
#include "tests/windows/windows_program.h"
#include "windows/display_ejection.h"
#include "windows/display_set.h"
#include "windows/layout_file_name.h"
#include "windows/layout_matching.h"
#include "windows/window_layout.h"

namespace tallowin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string repeated(std::string_view text, int times) {
  std::string result;
  for (int i = 0; i < times; ++i) {
    result += text;
  }
  return result;
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
    EXPECT_EQ(cut, layoutFileName("n", tooLong)) << "found again";
    EXPECT_NE(cut, layoutFileName("n", tooLong + "y")) << "not taken for another";
    EXPECT_LE(cut.size(), kept.size() + character.size() + 20 + 5) << "the rest is a number and \".json\"";
  }
}

WindowInfo window(WindowNumber id, std::optional<std::string> bundleID, std::string title) {
  WindowInfo info;
  info.id = id;
  info.bundleID = std::move(bundleID);
  info.title = std::move(title);
  return info;
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

TEST(WindowLayout, AnythingMalformedMakesItNone) {
  const std::pair<const char*, const char*> changes[] = {
      {"/name", "null"},
      {"/name", "1"},
      {"/savedAt", "\"yesterday\""},
      {"/savedAt", "794000000.5"},
      {"/displaySetup", "[]"},
      {"/entries", "{}"},
      {"/entries/0", "[]"},
      {"/entries/0/bundleID", "null"},
      {"/entries/0/title", "false"},
      {"/entries/0/spaceUUID", "7"},
      {"/entries/0/frame", "null"},
      {"/entries/0/frame", "[1, 2, 3, 4]"},
      {"/entries/0/frame", "[[1, 2], [3]]"},
      {"/entries/0/frame", "[[1, 2], [3, 4], [5, 6]]"},
      {"/entries/0/frame", "[[1, \"2\"], [3, 4]]"},
  };
  for (const auto& [where, value] : changes) {
    auto json = *parseJSON(goodLayout);
    json[PropertyList::json_pointer(where)] = *parseJSON(value);
    EXPECT_EQ(layoutFromJson(json), std::nullopt) << where << " " << value;
  }
  EXPECT_EQ(layoutFromJson(PropertyList::array()), std::nullopt);
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

constexpr auto threeDisplays = R"({"menuBarDisplay": "22222222-2222-4222-8222-222222222222", "displays": [
  {"id": 1, "uuid": "22222222-2222-4222-8222-222222222222", "bounds": [0, 0, 800, 600], "main": true},
  {"id": 2, "uuid": "11111111-1111-4111-8111-111111111111", "bounds": [800, 0, 800, 600], "builtin": BUILTIN}],
  "managedDisplaySpaces": [
    {"Display Identifier": "33333333-3333-4333-8333-333333333333", "Spaces": [{"ManagedSpaceID": 3}]},
    {"Display Identifier": "11111111-1111-4111-8111-111111111111", "Spaces": [{"ManagedSpaceID": 1}]},
    {"Display Identifier": "22222222-2222-4222-8222-222222222222", "Spaces": [{"ManagedSpaceID": 2}]}]})";

TEST(HomeDisplay, IsTheBuiltInOneElseTheOneWithTheMenuBar) {
  for (const auto& [builtin, home] : {std::pair("true", 1), std::pair("false", 2)}) {
    std::string scenario = threeDisplays;
    scenario.replace(scenario.find("BUILTIN"), 7, builtin);
    SimulatedProgram program(scenario);
    const auto found = homeDisplay(program.desktop.displays(), program.snapshot());
    ASSERT_TRUE(found);
    EXPECT_EQ(found->spaces.at(0).managedID, home);
  }
  SimulatedProgram program("{}");
  EXPECT_EQ(homeDisplay(program.desktop.displays(), SpaceSnapshot::empty()), std::nullopt);
}

TEST(DisplaySet, TheKeyDoesNotDependOnTheOrder) {
  SimulatedProgram program(R"({"displays": []})");
  SpaceSnapshot snapshot;
  snapshot.displays = {display("B", 1, "d"), display("a", 2, "d"), display("A", 3, "d")};
  const auto set = connectedDisplays(program.desktop.displays(), snapshot);
  EXPECT_THAT(set.identifiers, ElementsAre("A", "B", "a"));
  EXPECT_EQ(set.key(), "A+B+a");
  EXPECT_EQ(DisplaySet().key(), "");
}

}  // namespace
}  // namespace tallowin
