#pragma once

#include <cstdint>
#include <expected>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "base/alert_display.h"
#include "platform/dbus/notification_service.h"
#include "platform/log.h"

namespace tallowin {

/// Questions as notifications of the desktop that stay until they are answered: with buttons where the service has
/// them, else with the sentence that says how to answer.
///
/// Closing a notification that has buttons closes the question; a click on its body, the "default" action, does
/// nothing. One without buttons is no more than a message, so closing it leaves the question open; so does a service
/// that takes it away by itself. Where there is no service, or it goes, the log tells, and the next service on the same
/// bus shows the questions that are open. Main thread only.
class NotificationAlerts : public AlertDisplay {
 public:
  NotificationAlerts(NotificationService& service, Log& log);
  NotificationAlerts(const NotificationAlerts&) = delete;
  NotificationAlerts& operator=(const NotificationAlerts&) = delete;

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
