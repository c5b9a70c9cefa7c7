#include "platform/dbus/dbus_module.h"

#include <optional>

#include "platform/dbus/bus_service.h"
#include "platform/dbus/notification_alerts.h"
#include "platform/dbus/notification_toasts.h"

namespace tallowin {

namespace {

class SharedDesktopBus : public DesktopBus {
 public:
  SharedDesktopBus(MainQueue& mainQueue, Descriptors& descriptors, const Clock& clock, Log& log)
      : link_(mainQueue, descriptors),
        notifications_(link_, mainQueue),
        toasts_(notifications_, clock, log),
        service_(link_, mainQueue, clock, log),
        log_(log) {}

  Toasts& toasts() override { return toasts_; }
  AlertDisplay& alerts() override {
    if (!alerts_) {
      alerts_.emplace(notifications_, log_);
    }
    return *alerts_;
  }
  DesktopService& service() override { return service_; }

 private:
  BusLink link_;
  NotificationService notifications_;
  NotificationToasts toasts_;
  BusService service_;
  Log& log_;
  // Made when first wanted: from then on the bus wakes the program for every notification that is closed.
  std::optional<NotificationAlerts> alerts_;
};

}  // namespace

}  // namespace tallowin

extern "C" [[gnu::visibility("default")]] const tallowin::DBusModule* tallowinDBusModule() {
  using namespace tallowin;
  static constexpr DBusModule module = {
      [](MainQueue& mainQueue, Descriptors& descriptors, const Clock& clock, Log& log) -> DesktopBus* {
        return new SharedDesktopBus(mainQueue, descriptors, clock, log);
      }};
  return &module;
}
