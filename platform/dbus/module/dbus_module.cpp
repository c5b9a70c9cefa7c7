#include "platform/dbus/dbus_module.h"

#include <cstdlib>
#include <memory>
#include <optional>
#include <string_view>
#include <syslog.h>
#include <systemd/sd-bus.h>
#include <systemd/sd-journal.h>

#include "platform/dbus/bus_service.h"
#include "platform/dbus/notifications.h"
#include "platform/pinned.h"

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

/// A connection of its own to the user's bus, on which every call waits so long at most; null when there is no bus.
class WaitingBus : Pinned {
 public:
  explicit WaitingBus(Duration patience) {
    if (sd_bus_open_user(&bus_) < 0) {
      bus_ = nullptr;
      return;
    }
    const auto microseconds = std::chrono::duration_cast<std::chrono::microseconds>(patience).count();
    sd_bus_set_method_call_timeout(bus_, static_cast<std::uint64_t>(microseconds));
  }
  ~WaitingBus() { sd_bus_flush_close_unref(bus_); }

  /// Calls a method of the bus itself. Null when it fails.
  template <typename... Arguments>
  [[nodiscard]] std::unique_ptr<sd_bus_message, decltype(&sd_bus_message_unref)> call(const char* method,
                                                                                      const char* types,
                                                                                      Arguments... arguments) const {
    sd_bus_message* reply = nullptr;
    if (bus_ != nullptr) {
      sd_bus_call_method(bus_, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method, nullptr,
                         &reply, types, arguments...);
    }
    return {reply, sd_bus_message_unref};
  }

 private:
  sd_bus* bus_ = nullptr;
};

bool startService(const char* name, Duration patience) {
  const WaitingBus bus(patience);
  constexpr std::uint32_t noFlags = 0;
  return bus.call("StartServiceByName", "su", name, noFlags) != nullptr;
}

BusFacts busFacts() {
  constexpr Duration patience = std::chrono::milliseconds(300);  // for each of three calls
  constexpr std::string_view notifications = "org.freedesktop.Notifications";
  const WaitingBus bus(patience);
  BusFacts facts;
  for (const char* list : {"ListNames", "ListActivatableNames"}) {
    const auto reply = bus.call(list, nullptr);
    char** names = nullptr;
    if (reply == nullptr || sd_bus_message_read_strv(reply.get(), &names) < 0) {
      break;
    }
    const bool isOwned = std::string_view(list) == "ListNames";
    facts.answers = true;
    for (char** name = names; name != nullptr && *name != nullptr; ++name) {
      facts.hasNotifications |= *name == notifications;
      facts.hasProgram |= isOwned && std::string_view(*name) == "com.quorvex.Tallowin";
      std::free(*name);
    }
    std::free(names);
  }
  return facts;
}

int journalStream() {
  return sd_journal_stream_fd("tallowin", LOG_INFO, 0);
}

}  // namespace

}  // namespace tallowin

extern "C" [[gnu::visibility("default")]] const tallowin::DBusModule* tallowinDBusModule() {
  using namespace tallowin;
  static constexpr DBusModule module = {
      [](MainQueue& mainQueue, Descriptors& descriptors, const Clock& clock, Log& log) -> DesktopBus* {
        return new SharedDesktopBus(mainQueue, descriptors, clock, log);
      },
      startService, busFacts, journalStream};
  return &module;
}
