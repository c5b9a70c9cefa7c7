#include "platform/dbus/dbus_module.h"

#include "platform/dbus/notification_toasts.h"

extern "C" [[gnu::visibility("default")]] const tallowin::DBusModule* tallowinDBusModule() {
  using namespace tallowin;
  static constexpr DBusModule module = {
      [](MainQueue& mainQueue, Descriptors& descriptors, const Clock& clock, Log& log) -> Toasts* {
        return new NotificationToasts({mainQueue, descriptors, clock, log});
      }};
  return &module;
}
