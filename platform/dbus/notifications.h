#pragma once

#include <chrono>
#include <cstdint>
#include <expected>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/log_toasts.h"
#include "base/pending_alerts.h"
#include "platform/clock.h"
#include "platform/dbus/notification_service.h"
#include "platform/log.h"
#include "platform/messages.h"
#include "platform/pinned.h"

namespace tallowin {

/// Messages as notifications of the desktop (Desktop Notifications Specification, org.freedesktop.Notifications), each
/// in place of the last one, and always in the log.
///
/// While a notification is being answered, which takes long when the service has yet to start, the newest message waits
/// for it and those before are only logged. When there is no bus or no service, messages are only logged, and the next
/// one after 30 s tries again. Main thread only.
class NotificationToasts : public Toasts, Pinned {
 public:
  NotificationToasts(NotificationService& service, const Clock& clock, Log& log)
      : service_(service), clock_(clock), log_(log), logged_(log), lost_(service.onLost([this] { lost(); })) {}

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

/// Questions as notifications of the desktop that stay until they are answered: with buttons where the service has
/// them, else with the sentence that says how to answer.
///
/// Closing a notification that has buttons closes the question; a click on its body, the "default" action, does
/// nothing. One without buttons is no more than a message, so closing it leaves the question open; so does a service
/// that takes it away by itself. Where there is no service, or it goes, the log tells, and the next service on the same
/// bus shows the questions that are open. Main thread only.
class NotificationAlerts : public AlertDisplay, Pinned {
 public:
  NotificationAlerts(NotificationService& service, Log& log);

  Subscription show(const Alert& alert, const std::string& howToAnswer, Answered answered) override;

 private:
  using Key = std::uint64_t;
  using ID = NotificationService::ID;
  struct Shown {
    Alert alert;
    std::string howToAnswer;
    Answered answered;
    bool hasButtons = false;
    Subscription call;       ///< what the service has not answered yet
    bool notifying = false;  ///< the call is the one that shows it
    bool withdrawn = false;  ///< no longer wanted, but its number, by which it can be closed, is not known yet
    ID id;                   ///< number 0 while it is not on the screen
  };

  void ask(Key key);
  void notify(Key key, const std::expected<std::vector<std::string>, std::string>& capabilities);
  void notified(Key key, const std::expected<ID, std::string>& result);
  void withdraw(Key key);
  void invoked(const ID& id, const std::string& action);
  void closed(const ID& id, std::uint32_t reason);
  void changed(const std::string& owner);
  void lost();
  void giveUp(Shown& shown, std::string_view why);
  [[nodiscard]] Shown* find(const ID& id);

  NotificationService& service_;
  Log& log_;
  Subscription lost_;
  std::map<Key, Shown> shown_;
  Key lastKey_ = 0;
};

}  // namespace tallowin
