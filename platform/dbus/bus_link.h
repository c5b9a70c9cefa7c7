#pragma once

#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <string>
#include <systemd/sd-bus.h>

#include "base/broadcaster.h"
#include "platform/descriptors.h"
#include "platform/main_queue.h"
#include "platform/pinned.h"

namespace tallowin {

/// Lets go of an object of sd-bus.
template <auto unref>
struct BusUnref {
  template <typename Object>
  void operator()(Object* object) const {
    unref(object);
  }
};

/// Something that the bus calls back for, until this is let go of.
using BusSlot = std::unique_ptr<sd_bus_slot, BusUnref<sd_bus_slot_unref>>;
using BusMessage = std::unique_ptr<sd_bus_message, BusUnref<sd_bus_message_unref>>;

/// A connection to the user's message bus, served from the main thread's loop. Nothing waits for the other side: calls
/// are queued until the bus has answered the greeting. Main thread only.
class UserBus : Pinned {
 public:
  /// Begins to connect. The error is a few words for a log. `onLost` runs once, when the bus has gone or turns out not
  /// to be one, after the replies of all outstanding calls (they are errors); the connection may be let go of in it.
  [[nodiscard]] static std::expected<std::unique_ptr<UserBus>, std::string> open(MainQueue& queue,
                                                                                 Descriptors& descriptors,
                                                                                 std::function<void()> onLost);

  /// What has not been sent is dropped; no reply comes any more.
  ~UserBus();

  [[nodiscard]] sd_bus* raw() const { return bus_; }

  /// To be called after everything that was done with raw(), but in the handler of a reply.
  void serve();

 private:
  UserBus(sd_bus* bus, int poll, MainQueue& queue, std::function<void()> onLost);

  [[nodiscard]] bool watchEvents(int operation);
  [[nodiscard]] bool awaitTimeout();
  void turn();
  void lose();

  sd_bus* const bus_;
  /// An epoll(7) descriptor with the bus in it. It is readable whenever there is something to do, also when that is to
  /// write, which nobody but the bus knows.
  const OwnedDescriptor poll_;
  MainQueue& queue_;
  std::function<void()> onLost_;
  Subscription watch_;
  WorkItem work_;  ///< the next turn, when one is due at a certain time
};

/// The program's one connection to the user's bus, shared by all who speak there. It is opened when one of them wants
/// it, also again after it was lost. Main thread only.
class BusLink : Pinned {
 public:
  BusLink(MainQueue& queue, Descriptors& descriptors) : queue_(queue), descriptors_(descriptors) {}

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
