#include "app/main/lazy_notifications.h"

#include <utility>

namespace tallowin {

void LazyNotifications::show(const Toast& toast) {
  auto* const desktop = dbus_.bus();
  Toasts& toasts = desktop != nullptr ? desktop->toasts() : logged_;
  toasts.show(toast);
}

Subscription LazyNotifications::show(const Alert& alert, const std::string& howToAnswer, Answered answered) {
  auto* const desktop = dbus_.bus();
  return desktop != nullptr ? desktop->alerts().show(alert, howToAnswer, std::move(answered)) : Subscription();
}

}  // namespace tallowin
