#include "platform/dbus/notification_toasts.h"

#include <utility>

namespace tallowin {

namespace {

constexpr std::chrono::seconds pauseAfterRefusal{30};
constexpr std::chrono::milliseconds expiry{2500};

}  // namespace

void NotificationToasts::show(const Toast& toast) {
  logged_.show(toast);
  if (retryAt_ && clock_.systemUptime() < *retryAt_) {
    return;
  }
  if (call_) {
    waiting_ = toast;
  } else {
    send(toast);
  }
}

void NotificationToasts::send(const Toast& toast) {
  DesktopNotification notification;
  notification.icon = toast.isError ? "dialog-error" : "tallowin";
  notification.summary = toast.text;
  notification.urgency = toast.isError ? DesktopNotification::Urgency::normal : DesktopNotification::Urgency::low;
  notification.expiry = expiry;
  notification.replaces = shown_;
  auto call = service_.notify(notification, [this](const auto& result) { sent(result); });
  if (call) {
    call_ = *std::move(call);
  } else {
    giveUp(call.error());
  }
}

void NotificationToasts::sent(const std::expected<NotificationService::ID, std::string>& result) {
  call_.cancel();
  if (!result) {
    giveUp(result.error());
    return;
  }
  shown_ = result->number;
  if (const auto next = std::exchange(waiting_, std::nullopt)) {
    send(*next);
  }
}

void NotificationToasts::giveUp(std::string_view why) {
  log_.info("NotificationToasts", "the desktop shows no notifications: " + std::string(why));
  retryAt_ = clock_.systemUptime() + pauseAfterRefusal;
  waiting_.reset();
}

void NotificationToasts::lost() {
  shown_ = 0;
  if (call_) {
    call_.cancel();
    giveUp("the bus has gone");
  }
}

}  // namespace tallowin
