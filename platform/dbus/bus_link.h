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

/// The program's one connection to the user's bus, shared by all who speak there and served from the main thread's
/// loop. It is opened when one of them wants it, also again after it was lost. Nothing waits for the other side: calls
/// are queued until the bus has answered the greeting. Main thread only.
class BusLink : Pinned {
 public:
  BusLink(MainQueue& queue, Descriptors& descriptors) : queue_(queue), descriptors_(descriptors) {}

  /// The connection, or null while there is none.
  [[nodiscard]] sd_bus* bus() const { return bus_.get(); }

  /// Opens the connection if there is none. The error is a few words for a log.
  [[nodiscard]] std::expected<void, std::string> open();

  /// To be called after everything that was done with bus(), but in the handler of a reply.
  void serve();

  /// Closes it, for those who find that it does not work: what has not been sent is dropped, and no reply comes any
  /// more.
  void drop();

  /// Calls `opened` when there is a new connection; it may have been dropped again by another listener.
  [[nodiscard]] Subscription onOpened(std::function<void()> opened) { return opened_.subscribe(std::move(opened)); }
  /// Calls `lost` when it has gone, after the replies of all outstanding calls (they are errors).
  [[nodiscard]] Subscription onLost(std::function<void()> lost) { return lost_.subscribe(std::move(lost)); }

 private:
  [[nodiscard]] bool watchEvents(int operation);
  [[nodiscard]] bool awaitTimeout();
  void turn();

  MainQueue& queue_;
  Descriptors& descriptors_;
  Broadcaster<> opened_;
  Broadcaster<> lost_;
  /// An epoll(7) descriptor with the bus in it. It is readable whenever there is something to do, also when that is to
  /// write, which nobody but the bus knows.
  OwnedDescriptor poll_;
  std::unique_ptr<sd_bus, BusUnref<sd_bus_close_unref>> bus_;
  Subscription watch_;
  WorkItem work_;  ///< the next turn, when one is due at a certain time
};

}  // namespace tallowin
