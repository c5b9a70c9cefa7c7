#include "app/main/lazy_dbus.h"

#include <chrono>
#include <utility>

#include "platform/linux/lazy_images.h"

namespace tallowin {

namespace {

/// Loading takes a few milliseconds, which whoever waited for the start is not to wait for as well.
constexpr Duration untilLoaded = std::chrono::milliseconds(50);

}  // namespace

const DBusModule* loadDBusModule() {
  auto* const entry = programModuleFunction(TALLOWIN_DBUS_MODULE, dbusModuleEntry);
  return entry != nullptr ? reinterpret_cast<DBusModuleEntry>(entry)() : nullptr;
}

DesktopBus* LazyDBus::bus() {
  if (!std::exchange(tried_, true)) {
    if (const auto* const module = loadDBusModule()) {
      bus_.reset(module->makeDesktopBus(mainQueue_, descriptors_, clock_, log_));
    } else {
      log_.error("LazyDBus",
                 "there are no notifications and no D-Bus service: " TALLOWIN_DBUS_MODULE " cannot be loaded");
    }
  }
  return bus_.get();
}

void LazyDBus::show(const Toast& toast) {
  auto* const desktop = bus();
  Toasts& toasts = desktop != nullptr ? desktop->toasts() : logged_;
  toasts.show(toast);
}

Subscription LazyDBus::show(const Alert& alert, const std::string& howToAnswer, Answered answered) {
  auto* const desktop = bus();
  return desktop != nullptr ? desktop->alerts().show(alert, howToAnswer, std::move(answered)) : Subscription();
}

Subscription LazyDBus::offer(ServiceDescription description, Handlers handlers) {
  loading_ = mainQueue_.after(untilLoaded,
                              [this, described = std::move(description), handling = std::move(handlers)]() mutable {
                                if (auto* const desktop = bus()) {
                                  offered_ = desktop->service().offer(std::move(described), std::move(handling));
                                }
                              });
  return Subscription([this] {
    loading_.cancel();
    offered_.cancel();
  });
}

void LazyDBus::tellChanged(const std::string& interface, const std::vector<std::string>& properties) {
  if (offered_) {
    bus()->service().tellChanged(interface, properties);
  }
}

}  // namespace tallowin
