#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <utility>

#include "tests/platform/test_loop.h"
#include "tests/set_clock.h"

namespace tallowin {

/// A loop on real descriptors whose delays pass only when a test says so.
class SteppedLoop : public TestLoop, public SetClock {
 public:
  WorkItem after(Duration delay, std::function<void()> work) override {
    const auto key = std::pair(uptime + delay, ++lastId_);
    delayed_[key] = std::move(work);
    return WorkItem([this, key] { delayed_.erase(key); });
  }

  /// Runs everything that is ready, lets the time pass, and runs what is due then.
  void advance(Duration time) {
    runReady();
    uptime += time;
    while (!delayed_.empty() && delayed_.begin()->first.first <= uptime) {
      delayed_.extract(delayed_.begin()).mapped()();
      runReady();
    }
  }

  /// Lets time pass until the condition holds. False when that takes longer than anything here ever should.
  bool runUntil(const std::function<bool()>& condition) {
    return TestLoop::runUntil([&] {
      advance(std::chrono::milliseconds(20));
      return condition();
    });
  }

  [[nodiscard]] bool hasDelayedWork() const { return !delayed_.empty(); }

 private:
  int lastId_ = 0;
  std::map<std::pair<Duration, int>, std::function<void()>> delayed_;
};

}  // namespace tallowin
