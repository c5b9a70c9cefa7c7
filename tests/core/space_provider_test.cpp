// What is read from the window server's list of Spaces.

#include "core/space_provider.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unordered_set>

namespace tallowin {
namespace {

using testing::ElementsAre;

std::optional<std::vector<DisplaySpaces>> read(const char* json, const std::string& menuBar = "Main") {
  return SpaceProvider::readDisplays(PropertyList::parse(json), menuBar);
}

/// One line for each Space: "id number@index", with "f" and the pid for full-screen ones and "*" for active ones.
std::vector<std::string> lines(const std::vector<DisplaySpaces>& displays) {
  std::vector<std::string> result;
  for (const auto& display : displays) {
    for (const auto& space : display.spaces) {
      result.push_back((space.isActive ? "*" : "") + space.id + " " +
                       (space.desktopNumber ? std::to_string(*space.desktopNumber) : "-") + "@" +
                       std::to_string(space.indexOnDisplay) + (space.isFullscreen ? " f" : "") +
                       (space.fullscreenPID ? std::to_string(*space.fullscreenPID) : ""));
    }
  }
  return result;
}

TEST(SpaceProvider, DesktopNumbersRunAcrossDisplaysAndPassOverFullScreenSpaces) {
  const auto displays = read(R"([
    {"Display Identifier": "A", "Current Space": {"ManagedSpaceID": 4}, "Spaces": [
      {"ManagedSpaceID": 1, "uuid": "u1", "type": 0}, {"ManagedSpaceID": 2, "uuid": "u2"},
      {"ManagedSpaceID": 4, "uuid": "u4", "type": 4, "pid": 77}, {"ManagedSpaceID": 3, "uuid": "u3"}]},
    {"Display Identifier": "B", "Current Space": {"ManagedSpaceID": 5}, "Spaces": [
      {"ManagedSpaceID": 5, "uuid": "u5"}, {"ManagedSpaceID": 6, "uuid": "u6"}]}])",
                             "B");
  ASSERT_TRUE(displays);
  EXPECT_THAT(lines(*displays), ElementsAre("u1 1@0", "u2 2@1", "*u4 -@2 f77", "u3 3@3", "*u5 4@0", "u6 5@1"));
  EXPECT_EQ(displays->at(0).activeSpaceID, "u4");
  EXPECT_FALSE(displays->at(0).isMenuBarDisplay);
  EXPECT_TRUE(displays->at(1).isMenuBarDisplay);
}

TEST(SpaceProvider, MalformedEntriesAreLeftOutAndTheRestIsUsed) {
  struct Case {
    const char* why;
    const char* spaces;
    std::vector<std::string> expected;
  };
  const Case cases[] = {
      {"no or empty uuid",
       R"([{"ManagedSpaceID": 7}, {"ManagedSpaceID": 8, "uuid": ""}, {"ManagedSpaceID": 9, "uuid": 5}])",
       {"managed-7 1@0", "managed-8 2@1", "managed-9 3@2"}},
      {"no managed id, or none that is an integer",
       R"([{"ManagedSpaceID": 1}, {"uuid": "x"}, {"ManagedSpaceID": "2"}, {"ManagedSpaceID": 3.0}, {"ManagedSpaceID": true},
           {}, {"ManagedSpaceID": 2}])",
       {"managed-1 1@0", "managed-2 2@6"}},
      {"a managed id beyond 64 bits",
       R"([{"ManagedSpaceID": 18446744073709551615}, {"ManagedSpaceID": -5}])",
       {"managed--5 1@1"}},
      {"tiled Spaces are full-screen whatever their type",
       R"([{"ManagedSpaceID": 1, "type": 0, "TileLayoutManager": {}, "pid": 5}])",
       {"managed-1 -@0 f5"}},
      {"tiles that are no dictionary, a type that is no integer",
       R"([{"ManagedSpaceID": 1, "TileLayoutManager": [], "type": "4", "pid": 5}, {"ManagedSpaceID": 2, "type": 4.0}])",
       {"managed-1 1@0", "managed-2 2@1"}},
      {"a pid beyond 32 bits", R"([{"ManagedSpaceID": 1, "type": 4, "pid": 4294967296}])", {"managed-1 -@0 f"}},
      {"no Spaces at all", "[]", {}},
  };
  for (const auto& [why, spaces, expected] : cases) {
    const auto json = R"([{"Display Identifier": "Main", "Spaces": )" + std::string(spaces) + "}]";
    const auto displays = read(json.c_str());
    ASSERT_TRUE(displays) << why;
    ASSERT_EQ(displays->size(), 1U) << why;
    EXPECT_EQ(lines(*displays), expected) << why;
    EXPECT_EQ(displays->front().activeSpaceID, std::nullopt) << why;
    EXPECT_TRUE(displays->front().isMenuBarDisplay) << why;
  }
}

TEST(SpaceProvider, DisplaysWithoutTheirRequiredPartsAreLeftOut) {
  const auto displays =
      read(R"([{}, {"Display Identifier": "A"}, {"Spaces": []}, {"Display Identifier": 3, "Spaces": []},
    {"Display Identifier": "B", "Spaces": [{"ManagedSpaceID": 1}, 5]}, {"Display Identifier": "C", "Spaces": {}},
    {"Display Identifier": "D", "Spaces": [], "Current Space": []}])");
  ASSERT_TRUE(displays);
  ASSERT_EQ(displays->size(), 1U);
  EXPECT_EQ(displays->front().id, "D");
  for (const auto* json :
       {"null", "{}", "7", "\"x\"", "[5]", "[{\"Display Identifier\": \"A\", \"Spaces\": []}, null]"}) {
    EXPECT_EQ(read(json), std::nullopt) << json;
  }
  EXPECT_TRUE(read("[]")->empty());
}

TEST(SpaceProvider, TheLaterOfTwoActiveEntriesCounts) {
  const auto displays = read(R"([{"Display Identifier": "A", "Current Space": {"ManagedSpaceID": 1}, "Spaces": [
      {"ManagedSpaceID": 1, "uuid": "x"}, {"ManagedSpaceID": 1, "uuid": "y"}]}])");
  EXPECT_THAT(lines(*displays), ElementsAre("*x 1@0", "*y 2@1"));
  EXPECT_EQ(displays->front().activeSpaceID, "y");
}

TEST(SpaceSnapshot, QueriesAnswerTheFirstMatch) {
  // display A: x [y]      display B (menu bar): z [z']    display C has no active Space
  const auto displays = read(R"([
    {"Display Identifier": "A", "Current Space": {"ManagedSpaceID": 2},
     "Spaces": [{"ManagedSpaceID": 1, "uuid": "x"}, {"ManagedSpaceID": 2, "uuid": "y"}]},
    {"Display Identifier": "B", "Current Space": {"ManagedSpaceID": 3}, "Spaces": [{"ManagedSpaceID": 3, "uuid": "z"}]},
    {"Display Identifier": "C", "Current Space": {"ManagedSpaceID": 9}, "Spaces": [{"ManagedSpaceID": 4, "uuid": "w"}]}])",
                             "B");
  const SpaceSnapshot snapshot{*displays, Date()};
  EXPECT_EQ(snapshot.allSpaces().size(), 4U);
  ASSERT_EQ(snapshot.activeSpaces().size(), 2U);
  EXPECT_EQ(snapshot.activeSpaces()[1].id, "z");
  EXPECT_EQ(snapshot.space("w")->managedID, 4);
  EXPECT_EQ(snapshot.space("W"), std::nullopt);
  EXPECT_EQ(snapshot.menuBarDisplay()->id, "B");
  EXPECT_EQ(snapshot.display(*snapshot.space("w"))->id, "C");

  auto later = snapshot;
  later.timestamp += std::chrono::seconds(1);
  EXPECT_NE(later, snapshot);
  EXPECT_EQ(later.displays, snapshot.displays);
  const std::unordered_set<SpaceSnapshot> set{snapshot, later, snapshot};
  EXPECT_EQ(set.size(), 2U);
  EXPECT_EQ(SpaceSnapshot::empty().menuBarDisplay(), std::nullopt);
  EXPECT_LT(SpaceSnapshot::empty().timestamp, snapshot.timestamp);
}

}  // namespace
}  // namespace tallowin
