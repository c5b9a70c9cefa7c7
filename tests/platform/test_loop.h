#pragma once

#include <chrono>

#include "platform/linux/event_loop.h"

namespace tallowin {

/// The event loop in steps, for tests that speak to a real server.
class TestLoop : public EventLoop {
 public:
  /// Runs work until the condition holds. False when that takes longer than anything here ever should.
  bool runUntil(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!condition()) {
      if (std::chrono::steady_clock::now() > end) {
        return false;
      }
      turn(std::chrono::milliseconds(20));
    }
    return true;
  }

  /// Runs everything that can run without waiting.
  void runReady() {
    while (turn(Duration::zero())) {
    }
  }

  [[nodiscard]] bool hasTimers() const { return timerCount() > 0; }
};

}  // namespace tallowin
