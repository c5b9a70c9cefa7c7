#include "platform/simulated/raw_spaces.h"

#include <gtest/gtest.h>

namespace tallowin {
namespace {

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

TEST(RawSpacesTest, readsAroundMalformedEntriesAndKeepsThemThroughChanges) {
  RawSpaces spaces(malformedInPlaces());
  const std::vector<DesktopRow> rows = {{"A", {{1, true}, {2, true}, {9, false}}, 1}, {"B", {{3, true}}, 3}};
  EXPECT_EQ(spaces.rows(), rows);

  EXPECT_TRUE(spaces.activate(9));
  auto expected = malformedInPlaces();
  expected[1]["Current Space"] = expected[1]["Spaces"][4];
  EXPECT_EQ(spaces.list(), expected);
  EXPECT_FALSE(spaces.activate(77));
  EXPECT_EQ(spaces.list(), expected);
}

TEST(RawSpacesTest, desktopsAreAddedBehindTheOrdinaryOnesUnderNewIDs) {
  RawSpaces spaces(malformedInPlaces());
  EXPECT_EQ(spaces.addDesktop("A"), 10);
  EXPECT_EQ(spaces.rows()[0].spaces, (std::vector<DesktopSpace>{{1, true}, {2, true}, {10, true}, {9, false}}));
  EXPECT_EQ(spaces.remove(10), 2);
  EXPECT_EQ(spaces.addDesktop("B"), 11) << "ids are not used twice";
  EXPECT_EQ(spaces.addDesktop("C"), std::nullopt);
}

TEST(RawSpacesTest, aRemovedSpaceLeavesItsWindowsToANeighbour) {
  RawSpaces spaces(malformedInPlaces());
  EXPECT_EQ(spaces.remove(3), std::nullopt) << "the last one of its display";
  EXPECT_EQ(spaces.remove(77), std::nullopt);
  EXPECT_EQ(spaces.remove(1), 2) << "the first one's only neighbour";
  EXPECT_EQ(spaces.activeOn("A"), 2);
  EXPECT_EQ(spaces.remove(2), std::nullopt) << "the last ordinary one";
  EXPECT_EQ(spaces.remove(9), 2);
}

TEST(RawSpacesTest, displaysComeAndGoWithTheirSpaces) {
  RawSpaces spaces(malformedInPlaces());
  spaces.addDisplay("C");
  spaces.addDisplay("C");
  EXPECT_EQ(spaces.rows().back(), (DesktopRow{"C", {{10, true}}, 10}));
  spaces.removeDisplay("A");
  EXPECT_EQ(spaces.rows(), (std::vector<DesktopRow>{{"B", {{3, true}, {1, true}, {2, true}, {9, false}}, 3},
                                                    {"C", {{10, true}}, 10}}));
  spaces.removeDisplay("B");
  spaces.removeDisplay("C");
  EXPECT_TRUE(spaces.rows().empty());
}

TEST(RawSpacesTest, aDisplayThatComesBackGetsItsSpacesBack) {
  RawSpaces spaces(malformedInPlaces());
  spaces.activate(2);
  spaces.removeDisplay("A");
  EXPECT_TRUE(spaces.activate(1)) << "on B now";
  EXPECT_EQ(spaces.remove(9), 2) << "this one ends while its display is away";
  spaces.addDisplay("a");
  EXPECT_EQ(spaces.rows(), (std::vector<DesktopRow>{{"B", {{3, true}}, 3}, {"A", {{1, true}, {2, true}}, 2}}))
      << "under the name it had";

  // B's own desktop ends while A is away: B keeps one of those that it has inherited.
  spaces.removeDisplay("A");
  spaces.remove(3);
  spaces.addDisplay("A");
  EXPECT_EQ(spaces.rows(), (std::vector<DesktopRow>{{"B", {{2, true}}, 2}, {"A", {{1, true}}, 1}}));

  spaces.removeDisplay("A");
  spaces.removeDisplay("B");
  EXPECT_TRUE(spaces.rows().empty());
  spaces.addDisplay("B");
  EXPECT_EQ(spaces.rows(), (std::vector<DesktopRow>{{"B", {{2, true}, {1, true}}, 2}})) << "they have waited";
}

TEST(RawSpacesTest, hugeIDsAndNoListAtAllAreBorne) {
  RawSpaces huge(PropertyList::parse(
      R"([{"Display Identifier": "A", "Spaces": [{"ManagedSpaceID": 9223372036854775807}, {"ManagedSpaceID": 18446744073709551615}]}])"));
  EXPECT_EQ(huge.rows()[0].spaces.size(), 1U);
  EXPECT_EQ(huge.addDesktop("A"), 1);
  for (const auto* text : {"null", "5", "{}", R"("text")"}) {
    RawSpaces none(PropertyList::parse(text));
    EXPECT_TRUE(none.rows().empty());
    EXPECT_FALSE(none.activate(1));
    EXPECT_EQ(none.remove(1), std::nullopt);
    EXPECT_EQ(none.addDesktop("A"), std::nullopt);
  }
}

}  // namespace
}  // namespace tallowin
