#pragma once

#include <atomic>
#include <memory>

#include "platform/main_queue.h"
#include "platform/x11/x11_connection.h"

namespace tallowin {

/// Tells whether what was read from the server can still stand for the present: while the turn of the main queue lasts
/// in which it was read, and nothing has been sent to the server. Any thread.
class X11Moment {
 public:
  struct Stamp {
    unsigned turn = 0;
    unsigned sendings = 0;
    bool operator==(const Stamp&) const = default;
  };

  X11Moment(const X11Connection& connection, MainQueue& queue) : connection_(connection), queue_(queue) {}

  /// To be taken before reading.
  Stamp now();
  /// Whether that moment still lasts.
  [[nodiscard]] bool lasts(const Stamp& stamp) const { return stamp == current(); }
  /// Ends the moment: something was heard of the server.
  void end() { ++state_->turn; }

 private:
  struct State {
    std::atomic<unsigned> turn = 0;
    std::atomic<bool> isEnding = false;  ///< the end of the turn waits in the queue
  };

  [[nodiscard]] Stamp current() const { return {state_->turn, connection_.sendings()}; }

  const X11Connection& connection_;
  MainQueue& queue_;
  /// Owned here and by the end of the turn that waits in the queue.
  const std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace tallowin
