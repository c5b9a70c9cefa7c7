#include "platform/dbus/notifications.h"

#include <algorithm>
#include <utility>

#include "base/words.h"

namespace tallowin {

namespace {

constexpr std::chrono::seconds pauseAfterRefusal{30};
constexpr std::chrono::milliseconds expiry{2500};

std::string escaped(std::string_view text) {
  std::string markup;
  for (const char character : text) {
    switch (character) {
      case '&':
        markup += "&amp;";
        break;
      case '<':
        markup += "&lt;";
        break;
      case '>':
        markup += "&gt;";
        break;
      default:
        markup += character;
    }
  }
  return markup;
}

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

NotificationAlerts::NotificationAlerts(NotificationService& service, Log& log)
    : service_(service), log_(log), lost_(service.onLost([this] { lost(); })) {
  service_.listen({[this](const ID& id, const std::string& action) { invoked(id, action); },
                   [this](const ID& id, std::uint32_t reason) { closed(id, reason); },
                   [this](const std::string& owner) { changed(owner); }});
}

Subscription NotificationAlerts::show(const Alert& alert, const std::string& howToAnswer, Answered answered) {
  const auto key = ++lastKey_;
  auto& shown = shown_[key];
  shown.alert = alert;
  shown.howToAnswer = howToAnswer;
  shown.answered = std::move(answered);
  ask(key);
  return Subscription([this, key] { withdraw(key); });
}

void NotificationAlerts::ask(Key key) {
  auto call = service_.capabilities([this, key](const auto& capabilities) { notify(key, capabilities); });
  auto& shown = shown_.at(key);
  if (call) {
    shown.call = *std::move(call);
  } else {
    giveUp(shown, call.error());
  }
}

void NotificationAlerts::notify(Key key, const std::expected<std::vector<std::string>, std::string>& capabilities) {
  auto& shown = shown_.at(key);
  shown.call.cancel();
  if (!capabilities) {
    giveUp(shown, capabilities.error());
    return;
  }
  const auto can = [&](std::string_view what) { return std::ranges::find(*capabilities, what) != capabilities->end(); };
  shown.hasButtons = can("actions");
  auto body = shown.alert.informativeText;
  if (!shown.hasButtons) {
    body += (body.empty() ? "" : "\n") + shown.howToAnswer;
  }
  DesktopNotification notification;
  notification.icon = "dialog-question";
  notification.summary = shown.alert.messageText;
  notification.body = can("body-markup") ? escaped(body) : body;
  notification.buttons = shown.hasButtons ? shown.alert.buttons : std::vector<std::string>();
  notification.stays = true;
  notification.urgency = DesktopNotification::Urgency::critical;
  auto call = service_.notify(notification, [this, key](const auto& result) { notified(key, result); });
  if (call) {
    shown.notifying = true;
    shown.call = *std::move(call);
  } else {
    giveUp(shown, call.error());
  }
}

void NotificationAlerts::notified(Key key, const std::expected<ID, std::string>& result) {
  auto& shown = shown_.at(key);
  shown.call.cancel();
  shown.notifying = false;
  if (result) {
    shown.id = *result;
  } else {
    giveUp(shown, result.error());
  }
  if (shown.withdrawn) {
    withdraw(key);
  }
}

void NotificationAlerts::withdraw(Key key) {
  auto& shown = shown_.at(key);
  if (shown.notifying) {
    shown.withdrawn = true;  // it can be closed once its number is known
    return;
  }
  const auto id = shown.id;
  shown_.erase(key);
  if (id.number != 0) {
    service_.close(id);
  }
}

void NotificationAlerts::invoked(const ID& id, const std::string& action) {
  auto* const shown = find(id);
  const auto index = decimalInteger(action);
  if (shown == nullptr || !index || *index < 0 || std::cmp_greater_equal(*index, shown->alert.buttons.size())) {
    return;
  }
  if (const auto answered = std::exchange(shown->answered, nullptr)) {
    answered(static_cast<std::size_t>(*index));
  }
}

void NotificationAlerts::closed(const ID& id, std::uint32_t reason) {
  auto* const shown = find(id);
  if (shown == nullptr) {
    return;
  }
  shown->id = {};
  if (!shown->hasButtons || reason != NotificationService::dismissedByUser) {
    return;
  }
  if (const auto answered = std::exchange(shown->answered, nullptr)) {
    answered(std::nullopt);
  }
}

void NotificationAlerts::changed(const std::string& owner) {
  for (auto& [key, shown] : shown_) {
    if (shown.id.number != 0 && shown.id.service != owner) {
      shown.id = {};
      giveUp(shown, "the notification service has gone");
    }
    if (shown.id.number == 0 && !shown.call && !owner.empty()) {
      ask(key);
    }
  }
}

void NotificationAlerts::lost() {
  for (auto& [key, shown] : shown_) {
    if (shown.call || shown.id.number != 0) {
      shown.call.cancel();
      shown.notifying = false;
      shown.id = {};
      giveUp(shown, "the bus has gone");
    }
  }
  std::erase_if(shown_, [](const auto& entry) { return entry.second.withdrawn; });
}

void NotificationAlerts::giveUp(Shown& shown, std::string_view why) {
  if (!shown.withdrawn) {
    log_.info("NotificationAlerts",
              "the desktop does not show \"" + shown.alert.messageText + "\": " + std::string(why));
  }
}

NotificationAlerts::Shown* NotificationAlerts::find(const ID& id) {
  const auto found = std::ranges::find_if(shown_, [&](const auto& entry) { return entry.second.id == id; });
  return id.number != 0 && found != shown_.end() ? &found->second : nullptr;
}

}  // namespace tallowin
