#include "app/main/lazy_dbus.h"

#include <utility>

#include "platform/linux/lazy_images.h"

namespace tallowin {

const DBusModule* loadDBusModule() {
  auto* const entry = programModuleFunction(TALLOWIN_DBUS_MODULE, dbusModuleEntry);
  return entry != nullptr ? reinterpret_cast<DBusModuleEntry>(entry)() : nullptr;
}

DesktopBus* LazyDBus::bus() {
  if (!std::exchange(tried_, true)) {
    bus_ = load();
  }
  return bus_.get();
}

std::unique_ptr<DesktopBus> LazyDBus::load() const {
  const auto* const module = loadDBusModule();
  if (module == nullptr) {
    log_.error("LazyDBus",
               "there are no notifications and no D-Bus service: " TALLOWIN_DBUS_MODULE " cannot be loaded");
    return nullptr;
  }
  return std::unique_ptr<DesktopBus>(module->makeDesktopBus(mainQueue_, descriptors_, clock_, log_));
}

}  // namespace tallowin
