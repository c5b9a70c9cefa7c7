// What platform/desktop.h promises, for every implementation.

#include "tests/platform/desktop/desktop_contract.h"

#include <algorithm>
#include <gmock/gmock.h>

namespace tallowin {

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(AskedDesktopContract);

using testing::ElementsAre;

std::vector<ManagedSpaceID> DesktopContract::ids() {
  std::vector<ManagedSpaceID> ids;
  for (const auto& space : display().spaces) {
    ids.push_back(space.id);
  }
  return ids;
}

std::vector<ManagedSpaceID> DesktopContract::spacesOf(std::size_t place) {
  return world->desktop().spacesOfWindow(world->window(place)).value_or(std::vector<ManagedSpaceID>());
}

TEST_P(DesktopContract, tellsTheSpacesFromLeftToRight) {
  const auto reading = world->desktop().read();
  ASSERT_TRUE(reading);
  ASSERT_EQ(reading->displays.size(), 1U);
  const auto& only = reading->displays.front();
  EXPECT_TRUE(only.isMenuBarDisplay);
  ASSERT_EQ(only.spaces.size(), 4U);
  for (std::size_t place = 0; place < 4; ++place) {
    EXPECT_EQ(only.spaces[place].index, place);
    EXPECT_FALSE(only.spaces[place].isFullscreen);
    EXPECT_EQ(std::ranges::count(only.spaces, only.spaces[place].id, &DesktopSpace::id), 1);
  }
  EXPECT_EQ(only.current, only.spaces.front().id);
  EXPECT_EQ(world->desktop().activeSpace(), only.current);
  EXPECT_EQ(world->desktop().read(), reading) << "nothing has happened";
  EXPECT_TRUE(world->desktop().health().healthy());
}

TEST_P(DesktopContract, givesASignWhenAnotherSpaceIsShown) {
  std::vector<std::optional<ManagedSpaceID>> seen;
  EXPECT_TRUE(world->desktop().observe([&](const DesktopSign& sign) {
    EXPECT_NE(sign.reason, "");
    seen.push_back(display().current);
  }));
  world->settle();
  seen.clear();
  world->userSwitchesTo(2);
  world->settle();
  ASSERT_FALSE(seen.empty());
  EXPECT_EQ(seen.back(), ids()[2]);
  EXPECT_EQ(world->desktop().activeSpace(), ids()[2]);
}

TEST_P(DesktopContract, knowsWhereWindowsAreAndMovesThem) {
  const auto spaces = ids();
  EXPECT_THAT(spacesOf(1), ElementsAre(spaces[1]));
  EXPECT_TRUE(world->desktop().moveWindow(world->window(1), spaces[3]));
  world->settle();
  EXPECT_THAT(spacesOf(1), ElementsAre(spaces[3]));
  EXPECT_THAT(spacesOf(2), ElementsAre(spaces[2]));
  constexpr WindowNumber nobody = 4'000'000'000;
  EXPECT_EQ(world->desktop().spacesOfWindow(nobody).value_or(std::vector<ManagedSpaceID>()),
            std::vector<ManagedSpaceID>());
}

TEST_P(AskedDesktopContract, showsTheSpaceThatItIsAskedFor) {
  int signs = 0;
  asked().observe([&](const DesktopSign&) { ++signs; });
  EXPECT_TRUE(asked().switchTo(ids()[3]));
  world->settle();
  EXPECT_EQ(display().current, ids()[3]);
  EXPECT_GT(signs, 0);
}

TEST_P(AskedDesktopContract, addsASpaceBehindTheLast) {
  ASSERT_TRUE(asked().abilities().addsSpaces);
  const auto before = ids();
  asked().addSpace(display().id, noted());
  world->settle();
  EXPECT_EQ(outcomes, done);
  auto after = ids();
  ASSERT_EQ(after.size(), 5U);
  EXPECT_EQ(std::ranges::count(before, after.back()), 0);
  after.pop_back();
  EXPECT_EQ(after, before);
}

TEST_P(AskedDesktopContract, removesASpaceAndLeavesTheOthersAsTheyWere) {
  ASSERT_TRUE(asked().abilities().removesSpaces);
  const auto before = ids();
  bool isDone = false;
  asked().observe([&](const DesktopSign&) {
    EXPECT_EQ(ids().size(), 3U) << "no sign is given before it is done";
    isDone = true;
  });
  asked().removeSpace(before[1], noted());
  EXPECT_TRUE(isDone || ids() == before) << "everybody reads the Spaces as they were";
  world->settle();
  EXPECT_EQ(outcomes, done);
  EXPECT_THAT(ids(), ElementsAre(before[0], before[2], before[3]));
  EXPECT_THAT(spacesOf(0), ElementsAre(before[0]));
  EXPECT_THAT(spacesOf(1), ElementsAre(before[2])) << "on its right";
  EXPECT_THAT(spacesOf(2), ElementsAre(before[2]));
  EXPECT_THAT(spacesOf(3), ElementsAre(before[3]));
  EXPECT_EQ(display().current, before[0]);

  asked().observe([](const DesktopSign&) {});
  asked().removeSpace(before[3], noted());
  world->settle();
  EXPECT_THAT(ids(), ElementsAre(before[0], before[2]));
  EXPECT_THAT(spacesOf(3), ElementsAre(before[2])) << "the last one's go to the left";
}

TEST_P(AskedDesktopContract, keepsTheOnlySpace) {
  asked().removeSpace(ids().back() + 1000, noted());
  world->settle();
  while (ids().size() > 1 && outcomes.size() < 5) {
    asked().removeSpace(ids().front(), noted());
    world->settle();
  }
  asked().removeSpace(ids().front(), noted());
  world->settle();
  ASSERT_EQ(outcomes.size(), 5U);
  EXPECT_EQ(outcomes.front(), std::unexpected(DesktopRefusal::noSpace)) << "there is none of this id";
  EXPECT_EQ(outcomes.back(), std::unexpected(DesktopRefusal::noSpace));
  EXPECT_EQ(ids().size(), 1U);
  EXPECT_EQ(display().current, ids().front());
}

TEST_P(AskedDesktopContract, tellsNobodyAfterItsEnd) {
  const auto before = ids();
  asked().removeSpace(before[1], noted());
  const auto told = outcomes.size();  // where nothing has to be waited for
  world.reset();
  EXPECT_EQ(outcomes.size(), told);
}

}  // namespace tallowin
