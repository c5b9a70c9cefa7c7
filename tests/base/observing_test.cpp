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

TEST(Broadcaster, MayGoWhileTelling) {
  auto broadcaster = std::make_unique<Broadcaster<>>();
  int told = 0;
  const auto first = broadcaster->subscribe([&] { broadcaster.reset(); });
  const auto second = broadcaster->subscribe([&] { ++told; });
  broadcaster->tell();
  EXPECT_EQ(told, 1);
}

}  // namespace
}  // namespace tallowin
