#include "platform/emulated/broadcast_notification_center.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace tallowin {
namespace {

using testing::ElementsAre;

constexpr auto wake = NotificationName::NSWorkspaceDidWakeNotification;
constexpr auto launch = NotificationName::NSWorkspaceDidLaunchApplicationNotification;

class BroadcastNotificationCenterTest : public testing::Test {
 protected:
  Subscription observe(const std::string& who, std::function<void()> also = [] {}) {
    return center->addObserver(wake, [this, who, also = std::move(also)](const Notification&) {
      seen.push_back(who);
      also();
    });
  }

  std::unique_ptr<BroadcastNotificationCenter> center = std::make_unique<BroadcastNotificationCenter>();
  std::vector<std::string> seen;
};

TEST_F(BroadcastNotificationCenterTest, tellsTheObserversOfThatNameInOrder) {
  const auto a = observe("a");
  const auto b = observe("b");
  const auto other = center->addObserver(launch, [this](const Notification& notification) {
    seen.push_back(std::to_string(notification.application.value_or(0)));
  });
  center->post({wake, std::nullopt});
  center->post({launch, 42});
  EXPECT_THAT(seen, ElementsAre("a", "b", "42"));
}

TEST_F(BroadcastNotificationCenterTest, observersMayEndThemselvesAndEachOtherAndBringNewOnes) {
  Subscription second;
  Subscription brought;
  Subscription first = observe("first", [&] {
    first.cancel();
    second.cancel();
    brought = observe("brought");
  });
  second = observe("second");
  const auto third = observe("third");
  center->post({wake, std::nullopt});
  EXPECT_THAT(seen, ElementsAre("first", "third"));
  center->post({wake, std::nullopt});
  EXPECT_THAT(seen, ElementsAre("first", "third", "third", "brought"));
}

TEST_F(BroadcastNotificationCenterTest, theCenterMayGoBeforeItsSubscriptionsAndWhileItTells) {
  Subscription late;
  const auto first = observe("first", [&] { center.reset(); });
  late = observe("late", [&] { late.cancel(); });
  center->post({wake, std::nullopt});
  EXPECT_THAT(seen, ElementsAre("first", "late"));
  EXPECT_EQ(center, nullptr);
}

}  // namespace
}  // namespace tallowin
