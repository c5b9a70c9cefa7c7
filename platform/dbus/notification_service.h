#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <expected>
#include <functional>
#include <memory>
#include <string>
#include <systemd/sd-bus.h>
#include <vector>

#include "base/broadcaster.h"
#include "platform/dbus/bus_link.h"
#include "platform/pinned.h"

namespace tallowin {

/// What the Desktop Notifications Specification 1.2 lets a notification say, as far as it is used here.
struct DesktopNotification {
  enum class Urgency : std::uint8_t { low = 0, normal = 1, critical = 2 };

  std::uint32_t replaces = 0;  ///< the number of the notification whose place it takes, 0 for none
  std::string icon;
  std::string summary;  ///< plain text
  std::string body;     ///< markup where the service has the capability "body-markup", else plain text
  std::vector<std::string> buttons;
  bool stays = false;  ///< also when it has been clicked on; else it is not even kept in the service's list
  Urgency urgency = Urgency::normal;
  std::chrono::milliseconds expiry{0};  ///< zero for never
};

/// The desktop's notification service (org.freedesktop.Notifications) on the user's bus. The link is opened at the
/// first call. Nothing waits, and what is told here is told from the main queue with the bus at rest, so that a
/// listener may call anything. Main thread only.
class NotificationService : Pinned {
 public:
  /// A notification. Numbers start anew with each service, so they mean nothing without the service's own bus name.
  struct ID {
    std::string service;
    std::uint32_t number = 0;  ///< never 0 for a notification that is shown
    bool operator==(const ID&) const = default;
  };
  /// What the user did to notifications, those of other programs included, and who shows them.
  struct Listener {
    std::function<void(const ID& id, const std::string& action)> invoked;
    std::function<void(const ID& id, std::uint32_t reason)> closed;
    std::function<void(const std::string& service)> changed;  ///< another service than before; empty for none
  };
  static constexpr std::uint32_t dismissedByUser = 2;  ///< of the reasons

  template <typename Value>
  using Done = std::function<void(std::expected<Value, std::string>)>;
  /// A call that waits for its answer, or a few words why it could not be made. Letting go of it drops the answer, not
  /// the call.
  using Call = std::expected<Subscription, std::string>;

  NotificationService(BusLink& link, MainQueue& queue)
      : link_(link),
        queue_(queue),
        openedListener_(link.onOpened([this] { opened(); })),
        lostListener_(link.onLost([this] { lost(); })) {}

  /// What the service can do ("actions", "body-markup"...).
  [[nodiscard]] Call capabilities(Done<std::vector<std::string>> done);
  /// Shows a notification. A button's action is its index as a decimal.
  [[nodiscard]] Call notify(const DesktopNotification& notification, Done<ID> done);
  /// Takes a notification away, if the service still has it. Nothing happens without a connection.
  void close(const ID& id);

  /// From now on `listener` hears the news. To be called once.
  void listen(Listener listener);
  /// `lost` runs when the connection goes. Calls that wait for an answer may wait for ever then: let go of them.
  [[nodiscard]] Subscription onLost(std::function<void()> lost) { return lost_.subscribe(std::move(lost)); }

 private:
  using Append = std::function<int(sd_bus_message*)>;
  using Reply = std::function<void(sd_bus_message*)>;
  struct PendingCall;

  [[nodiscard]] Call call(const char* method, const Append& append, Reply reply);
  [[nodiscard]] std::expected<void, std::string> send(const char* method, const Append& append, PendingCall& call);
  [[nodiscard]] int addMatches();
  void opened();
  void lost();
  void tellLater(std::function<void()> news);
  void tellNext();

  static int replied(sd_bus_message* reply, void* call, sd_bus_error* error);
  static int heard(sd_bus_message* signal, void* self, sd_bus_error* error);

  BusLink& link_;
  MainQueue& queue_;
  Subscription openedListener_;
  Subscription lostListener_;
  Listener listener_;
  std::vector<BusSlot> matches_;  ///< on the present connection
  Broadcaster<> lost_;
  std::deque<std::function<void()>> news_;  ///< for the listener
  WorkItem telling_;
};

}  // namespace tallowin
