#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <systemd/sd-bus.h>

#include "base/log_toasts.h"
#include "platform/clock.h"
#include "platform/dbus/user_bus.h"
#include "platform/log.h"
#include "platform/toasts.h"

namespace tallowin {

/// Messages as notifications of the desktop (Desktop Notifications Specification, org.freedesktop.Notifications), each
/// in place of the last one, and always in the log.
///
/// The bus is connected to at the first message. While a notification is being answered, which takes long when the
/// service has yet to start, the newest message waits for it and those before are only logged. When there is no bus or
/// no service, messages are only logged, and the next one after 30 s tries again. Main thread only.
class NotificationToasts : public Toasts {
 public:
  struct Services {
    MainQueue& mainQueue;
    Descriptors& descriptors;
    const Clock& clock;
    Log& log;
  };

  explicit NotificationToasts(Services services) : services_(services), logged_(services.log) {}
  ~NotificationToasts() override { dropCall(); }
  NotificationToasts(const NotificationToasts&) = delete;
  NotificationToasts& operator=(const NotificationToasts&) = delete;

  void show(const Toast& toast) override;

 private:
  static int answered(sd_bus_message* reply, void* self, sd_bus_error* error);

  void sendWaiting();
  [[nodiscard]] bool connect();
  [[nodiscard]] int send(const Toast& toast);
  void take(sd_bus_message* reply);
  void giveUp(std::string_view why);
  void lost();
  void disconnect();
  void dropCall();

  const Services services_;
  LogToasts logged_;

  std::unique_ptr<UserBus> bus_;
  sd_bus_slot* call_ = nullptr;  ///< the notification that has not been answered yet
  std::optional<Toast> waiting_;
  WorkItem next_;                                    ///< sends the message that has waited
  std::uint32_t shown_ = 0;                          ///< the service's id of the last notification, 0 for none
  std::optional<std::chrono::nanoseconds> retryAt_;  ///< in system uptime
};

}  // namespace tallowin
