#pragma once

#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <string>
#include <systemd/sd-bus.h>

#include "platform/descriptors.h"
#include "platform/main_queue.h"

namespace tallowin {

/// A connection to the user's message bus, served from the main thread's loop. Nothing waits for the other side: calls
/// are queued until the bus has answered the greeting. Main thread only.
class UserBus {
 public:
  /// Begins to connect. The error is a few words for a log. `onLost` runs once, when the bus has gone or turns out not
  /// to be one, after the replies of all outstanding calls (they are errors); the connection may be let go of in it.
  [[nodiscard]] static std::expected<std::unique_ptr<UserBus>, std::string> open(MainQueue& queue,
                                                                                 Descriptors& descriptors,
                                                                                 std::function<void()> onLost);

  /// What has not been sent is dropped; no reply comes any more.
  ~UserBus();
  UserBus(const UserBus&) = delete;
  UserBus& operator=(const UserBus&) = delete;

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
  const int poll_;
  MainQueue& queue_;
  std::function<void()> onLost_;
  Subscription watch_;
  WorkItem work_;  ///< the next turn, when one is due at a certain time
};

}  // namespace tallowin
