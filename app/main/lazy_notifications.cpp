#include "app/main/lazy_notifications.h"

#include "base/log_toasts.h"
#include "platform/dbus/dbus_module.h"
#include "platform/qt/program_module.h"

namespace tallowin {

void LazyNotifications::show(const Toast& toast) {
  if (!toasts_) {
    toasts_ = load();
  }
  toasts_->show(toast);
}

std::unique_ptr<Toasts> LazyNotifications::load() const {
  auto* const entry = programModuleFunction(TALLOWIN_DBUS_MODULE, dbusModuleEntry);
  const auto* const module = entry != nullptr ? reinterpret_cast<DBusModuleEntry>(entry)() : nullptr;
  if (module == nullptr) {
    log_.error("LazyNotifications", "there are no notifications: " TALLOWIN_DBUS_MODULE " cannot be loaded");
    return std::make_unique<LogToasts>(log_);
  }
  return std::unique_ptr<Toasts>(module->makeToasts(mainQueue_, descriptors_, clock_, log_));
}

}  // namespace tallowin
