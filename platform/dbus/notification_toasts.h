#pragma once

#include <chrono>
#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>

#include "base/log_toasts.h"
#include "platform/clock.h"
#include "platform/dbus/notification_service.h"
#include "platform/log.h"
#include "platform/toasts.h"

namespace tallowin {

/// Messages as notifications of the desktop (Desktop Notifications Specification, org.freedesktop.Notifications), each
/// in place of the last one, and always in the log.
///
/// While a notification is being answered, which takes long when the service has yet to start, the newest message waits
/// for it and those before are only logged. When there is no bus or no service, messages are only logged, and the next
/// one after 30 s tries again. Main thread only.
class NotificationToasts : public Toasts {
 public:
  NotificationToasts(NotificationService& service, const Clock& clock, Log& log)
      : service_(service), clock_(clock), log_(log), logged_(log), lost_(service.onLost([this] { lost(); })) {}
  NotificationToasts(const NotificationToasts&) = delete;
  NotificationToasts& operator=(const NotificationToasts&) = delete;

  void show(const Toast& toast) override;

 private:
  void send(const Toast& toast);
  void sent(const std::expected<NotificationService::ID, std::string>& result);
  void giveUp(std::string_view why);
  void lost();

  NotificationService& service_;
  const Clock& clock_;
  Log& log_;
  LogToasts logged_;
  Subscription lost_;

  Subscription call_;                                ///< the notification that has not been answered yet
  std::optional<Toast> waiting_;                     ///< for it
  std::uint32_t shown_ = 0;                          ///< the service's number of the last notification, 0 for none
  std::optional<std::chrono::nanoseconds> retryAt_;  ///< in system uptime
};

}  // namespace tallowin
