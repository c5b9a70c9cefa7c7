#pragma once

#include <functional>
#include <map>

#include "platform/main_queue.h"

namespace tallowin {

/// Waits, without blocking, for what the server's events tell: that a window manager has done what it was asked for.
/// What is under way when this is destroyed is forgotten. Main thread only.
class X11Waits {
 public:
  explicit X11Waits(MainQueue& queue) : queue_(queue) {}

  /// Runs `then` once, never inside this call: with true as soon as `happened` holds, which is looked at whenever
  /// events have come, with false when it does not hold after `limit`.
  void until(std::function<bool()> happened, Duration limit, std::function<void(bool)> then);

  /// To be called when events have been handled.
  void lookAgain();

 private:
  struct Wait {
    std::function<bool()> happened;
    std::function<void(bool)> then;
    WorkItem end;
  };

  void look(int id, bool isLast);

  MainQueue& queue_;
  std::map<int, Wait> waits_;
  int latest_ = 0;
};

}  // namespace tallowin
