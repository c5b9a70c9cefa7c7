#include "app/main/lazy_notifications.h"

#include <utility>

#include "platform/qt/program_module.h"

namespace tallowin {

void LazyNotifications::show(const Toast& toast) {
  auto* const desktop = notifications();
  Toasts& toasts = desktop != nullptr ? desktop->toasts() : logged_;
  toasts.show(toast);
}

Subscription LazyNotifications::show(const Alert& alert, const std::string& howToAnswer, Answered answered) {
  auto* const desktop = notifications();
  return desktop != nullptr ? desktop->alerts().show(alert, howToAnswer, std::move(answered)) : Subscription();
}

DesktopNotifications* LazyNotifications::notifications() {
  if (!std::exchange(tried_, true)) {
    notifications_ = load();
  }
  return notifications_.get();
}

std::unique_ptr<DesktopNotifications> LazyNotifications::load() const {
  auto* const entry = programModuleFunction(TALLOWIN_DBUS_MODULE, dbusModuleEntry);
  const auto* const module = entry != nullptr ? reinterpret_cast<DBusModuleEntry>(entry)() : nullptr;
  if (module == nullptr) {
    log_.error("LazyNotifications", "there are no notifications: " TALLOWIN_DBUS_MODULE " cannot be loaded");
    return nullptr;
  }
  return std::unique_ptr<DesktopNotifications>(module->makeNotifications(mainQueue_, descriptors_, clock_, log_));
}

}  // namespace tallowin
