#pragma once

#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

#include "platform/dbus/notification_service.h"
#include "platform/log.h"
#include "tests/platform/dbus/fake_notification_service.h"
#include "tests/platform/dbus/message_bus.h"
#include "tests/set_clock.h"

namespace tallowin {

class KeptLog : public Log {
 public:
  void write(Level level, std::string_view category, std::string_view message) override {
    auto& list = category == "Toast" ? toasts : category == "PendingAlerts" ? questions : failures;
    list.push_back((level == Level::error ? "error: " : "") + std::string(message));
  }

  std::vector<std::string> toasts;
  std::vector<std::string> questions;
  std::vector<std::string> failures;
};

/// A user's bus, at first not there, and what speaks to the notification service on it.
class NotificationTest : public testing::Test {
 protected:
  void startBus() {
    if (!bus_.start()) {
      GTEST_SKIP() << "dbus-daemon could not be started";
    }
  }

  void startService() {
    service_.emplace(loop_);
    ASSERT_TRUE(service_->ownsName());
  }

  bool runUntilShown(std::size_t count) {
    return loop_.runUntil([&] { return service_->shown.size() >= count; });
  }
  bool runUntilFailed(std::size_t count) {
    return loop_.runUntil([&] { return log_.failures.size() >= count; });
  }
  /// The reply to what was shown has come: nothing else is waited for.
  bool runUntilIdle() {
    return loop_.runUntil([&] { return !loop_.hasTimers(); });
  }

  MessageBus bus_;
  TestLoop loop_;
  KeptLog log_;
  std::optional<FakeNotificationService> service_;
  std::optional<BusLink> link_{std::in_place, loop_, loop_};
  std::optional<NotificationService> client_{std::in_place, *link_, loop_};
};

}  // namespace tallowin
