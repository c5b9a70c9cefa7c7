#pragma once

#include <cstdint>
#include <deque>
#include <expected>
#include <functional>
#include <memory>
#include <string>

#include "base/lifetime.h"
#include "platform/clock.h"
#include "platform/main_queue.h"
#include "platform/pinned.h"
#include "platform/ways_in.h"
#include "presentation/link/messages.h"

namespace tallowin {

/// The resident program's end of the connection to the ui process, one at a time. Main thread only.
class UiLink : Pinned {
 public:
  /// A message that the ui process has not seen for so long is taken for a sign that it hangs.
  static constexpr Duration patience = std::chrono::seconds(3);

  struct Events {
    std::function<void()> onAttached;
    std::function<void()> onGone;    ///< the other end has closed the connection, or was let go of
    std::function<void()> onSilent;  ///< a message has not been seen in time
  };

  UiLink(MainQueue& queue, const Clock& clock, Events events)
      : queue_(queue), clock_(clock), events_(std::move(events)) {}

  /// Takes whoever asks as the ui process. False when there is one already.
  bool attach(std::shared_ptr<Caller> caller, const std::string& ownVersion);
  [[nodiscard]] bool isAttached() const { return caller_ != nullptr; }

  /// Sends a message. It has no effect while nobody is attached.
  void send(const ui::Message& message);
  /// The other end has taken every message up to this one.
  void seen(std::uint64_t number);

  /// Closes the connection.
  void drop();

 private:
  struct Unseen {
    std::uint64_t number;
    std::uint64_t sentAt;  ///< Clock::machAbsoluteTime()
  };

  void watchOldest();

  MainQueue& queue_;
  const Clock& clock_;
  const Events events_;
  std::shared_ptr<Caller> caller_;  ///< shared with the request that it came with, until that has been handled
  std::uint64_t lastNumber_ = 0;
  std::deque<Unseen> unseen_;
  WorkItem watch_;
  Lifetime lifetime_;
};

}  // namespace tallowin
