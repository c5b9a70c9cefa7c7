// What platform/windows.h promises, for every implementation.

#include "tests/platform/windows/windows_contract.h"

#include <algorithm>
#include <gmock/gmock.h>

namespace tallowin {

using testing::ElementsAre;
constexpr WindowRef nobody{4'000'000'000, 1};

std::vector<std::size_t> WindowsContract::listed(WindowScope scope) {
  std::vector<std::size_t> places;
  for (const auto& window : windows().list(scope).value_or(std::vector<DesktopWindow>())) {
    const auto found = std::ranges::find(all, window.id, &WindowRef::id);
    if (found != all.end()) {
      places.push_back(static_cast<std::size_t>(found - all.begin()));
    }
  }
  return places;
}

TEST_P(WindowsContract, areListedFrontToBack) {
  EXPECT_THAT(listed(WindowScope::onScreen), ElementsAre(0, 1, 2));
  EXPECT_THAT(listed(WindowScope::all), testing::UnorderedElementsAre(0, 1, 2, 3));
  const auto front = windows().window(all[0].id);
  ASSERT_TRUE(front);
  EXPECT_EQ(front->id, all[0].id);
  EXPECT_EQ(front->pid, all[0].pid);
  EXPECT_EQ(front->frame.size, (CGSize{300, 200}));
  EXPECT_EQ(front->layer, 0);
  EXPECT_GT(front->alpha, 0);
  const auto list = windows().list(WindowScope::all).value_or(std::vector<DesktopWindow>());
  const auto found = std::ranges::find(list, all[0].id, &DesktopWindow::id);
  ASSERT_NE(found, list.end());
  EXPECT_EQ(found->title, front->title);
  EXPECT_FALSE(windows().window(nobody.id));
}

TEST_P(WindowsContract, areRaisedAndFocused) {
  EXPECT_TRUE(windows().mayChange());
  EXPECT_EQ(windows().focused(all[1].pid), all[1].id);
  EXPECT_TRUE(windows().raise(all[2]));
  world->settle();
  const auto order = listed(WindowScope::onScreen);
  EXPECT_LT(std::ranges::find(order, 2U), std::ranges::find(order, 1U));
  EXPECT_EQ(windows().focused(all[2].pid), all[2].id);
  EXPECT_FALSE(windows().raise(nobody));
}

TEST_P(WindowsContract, takeAFrame) {
  const CGRect frame{{40, 60}, {500, 350}};
  EXPECT_TRUE(windows().setFrame(all[0], frame));
  world->settle();
  EXPECT_EQ(windows().window(all[0].id)->frame, frame);
  EXPECT_TRUE(windows().setFrame(all[0], frame)) << "it has it already";
  EXPECT_FALSE(windows().setFrame(nobody, frame));
}

TEST_P(WindowsContract, areMinimisedAndShownAgain) {
  EXPECT_TRUE(windows().minimize(all[1]));
  world->settle();
  EXPECT_THAT(listed(WindowScope::onScreen), ElementsAre(0, 2));
  EXPECT_EQ(listed(WindowScope::all).size(), 4U);
  EXPECT_FALSE(windows().minimize(all[1])) << "it is minimised";
  EXPECT_TRUE(windows().unminimize(all[1]));
  world->settle();
  EXPECT_EQ(listed(WindowScope::onScreen).size(), 3U);
}

TEST_P(WindowsContract, areClosed) {
  EXPECT_TRUE(windows().close(all[1], Windows::patience));
  world->settle();
  EXPECT_FALSE(windows().window(all[1].id));
  EXPECT_FALSE(windows().close(nobody, Windows::patience));
}

TEST_P(WindowsContract, tellTheirChangesIfTheySaySo) {
  int told = 0;
  const bool tells = windows().observe([&] { ++told; });
  world->settle();
  told = 0;
  windows().setFrame(all[0], {{40, 60}, {500, 350}});
  world->settle();
  EXPECT_EQ(told > 0, tells);
}

}  // namespace tallowin
