// Observer lists that change while they are being told, and values that tell of their changes.

#include <gtest/gtest.h>

#include "base/broadcaster.h"

namespace tallowin {
namespace {

TEST(Broadcaster, AnObserverMayEndItselfAndOthersWhileTold) {
  Broadcaster<int> broadcaster;
  std::vector<std::string> told;
  Subscription first;
  Subscription second;
  Subscription third;
  first = broadcaster.subscribe([&](int) {
    told.emplace_back("first");
    first.cancel();
    second.cancel();
  });
  second = broadcaster.subscribe([&](int) { told.emplace_back("second"); });
  third = broadcaster.subscribe([&](int) { told.emplace_back("third"); });
  broadcaster.tell(1);
  broadcaster.tell(2);
  EXPECT_EQ(told, (std::vector<std::string>{"first", "third", "third"}));
}

TEST(Broadcaster, AnObserverThatComesWhileTellingIsToldTheNextTime) {
  Broadcaster<> broadcaster;
  int late = 0;
  Subscription second;
  const auto first = broadcaster.subscribe([&] {
    if (!second) {
      second = broadcaster.subscribe([&late] { ++late; });
    }
  });
  broadcaster.tell();
  EXPECT_EQ(late, 0);
  broadcaster.tell();
  EXPECT_EQ(late, 1);
}

TEST(Broadcaster, MayGoWhileTelling) {
  auto broadcaster = std::make_unique<Broadcaster<>>();
  int told = 0;
  const auto first = broadcaster->subscribe([&] { broadcaster.reset(); });
  const auto second = broadcaster->subscribe([&] { ++told; });
  broadcaster->tell();
  EXPECT_EQ(told, 1);
}

TEST(Published, TellsBeforeAndAfterTheChange) {
  Published<int> value(1);
  std::vector<std::pair<int, int>> seen;  // the value told, and what get() answers then
  const auto before = value.observeWillChange([&](int next) { seen.emplace_back(next, value.get()); });
  const auto after = value.observeDidChange([&](int now) { seen.emplace_back(now, value.get()); });
  value.set(2);
  EXPECT_EQ(seen, (std::vector<std::pair<int, int>>{{2, 1}, {2, 2}}));
}

}  // namespace
}  // namespace tallowin
