#include "platform/dbus/dbus_module.h"

#include <optional>

#include "platform/dbus/notification_alerts.h"
#include "platform/dbus/notification_toasts.h"

namespace tallowin {

namespace {

class BusNotifications : public DesktopNotifications {
 public:
  BusNotifications(MainQueue& mainQueue, Descriptors& descriptors, const Clock& clock, Log& log)
      : service_(mainQueue, descriptors), toasts_(service_, clock, log), log_(log) {}

  Toasts& toasts() override { return toasts_; }
  AlertDisplay& alerts() override {
    if (!alerts_) {
      alerts_.emplace(service_, log_);
    }
    return *alerts_;
  }

 private:
  NotificationService service_;
  NotificationToasts toasts_;
  Log& log_;
  // Made when first wanted: from then on the bus wakes the program for every notification that is closed.
  std::optional<NotificationAlerts> alerts_;
};

}  // namespace

}  // namespace tallowin

extern "C" [[gnu::visibility("default")]] const tallowin::DBusModule* tallowinDBusModule() {
  using namespace tallowin;
  static constexpr DBusModule module = {
      [](MainQueue& mainQueue, Descriptors& descriptors, const Clock& clock, Log& log) -> DesktopNotifications* {
        return new BusNotifications(mainQueue, descriptors, clock, log);
      }};
  return &module;
}
