#pragma once

#include <cstddef>
#include <functional>
#include <memory>

#include "platform/main_queue.h"
#include "windows/window_mover.h"

namespace tallowin {

/// Counts how many of several moves succeed and tells the count once, when the last one has completed. Never inside the
/// call that starts the moves: with none to wait for, or none left, it is told by way of the main queue, so that
/// callers need not mind the difference. Main thread only.
class MoveTally {
 public:
  using Completion = std::function<void(std::size_t moved)>;

  explicit MoveTally(Completion completion);

  /// The completion to start one more move with.
  [[nodiscard]] WindowMover::Completion expect();

  /// To be called once, when every move has been started. Nothing is told before. When the mover drops moves that are
  /// under way, nothing ever is.
  void close(MainQueue& mainQueue);

 private:
  struct State {
    Completion completion;
    std::size_t pending = 0;
    std::size_t moved = 0;
    bool closed = false;
  };

  // Shared with the completions of the moves, which outlast this object.
  std::shared_ptr<State> state_;
};

}  // namespace tallowin
