#pragma once

#include <expected>
#include <memory>
#include <string>

#include "base/broadcaster.h"
#include "platform/dbus/user_bus.h"

namespace tallowin {

/// The program's one connection to the user's bus, shared by all who speak there. It is opened when one of them wants
/// it, also again after it was lost. Main thread only.
class BusLink {
 public:
  BusLink(MainQueue& queue, Descriptors& descriptors) : queue_(queue), descriptors_(descriptors) {}
  BusLink(const BusLink&) = delete;
  BusLink& operator=(const BusLink&) = delete;

  /// The connection, or null while there is none.
  [[nodiscard]] UserBus* bus() const { return bus_.get(); }

  /// Opens the connection if there is none. The error is a few words for a log.
  [[nodiscard]] std::expected<void, std::string> open();

  /// Closes it, for those who find that it does not work.
  void drop();

  /// Calls `opened` when there is a new connection; it may have been dropped again by another listener.
  [[nodiscard]] Subscription onOpened(std::function<void()> opened) { return opened_.subscribe(std::move(opened)); }
  /// Calls `lost` when it has gone, after the replies of all outstanding calls (they are errors).
  [[nodiscard]] Subscription onLost(std::function<void()> lost) { return lost_.subscribe(std::move(lost)); }

 private:
  MainQueue& queue_;
  Descriptors& descriptors_;
  Broadcaster<> opened_;
  Broadcaster<> lost_;
  std::unique_ptr<UserBus> bus_;
};

}  // namespace tallowin
