#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <utility>

#include "platform/clock.h"
#include "tests/platform/poll_loop.h"

namespace tallowin {

/// A loop on real descriptors whose delays pass only when a test says so.
class SteppedLoop : public PollLoop, public Clock {
 public:
  WorkItem after(Duration delay, std::function<void()> work) override {
    const auto key = std::pair(uptime_ + delay, ++lastId_);
    delayed_[key] = std::move(work);
    return WorkItem([this, key] { delayed_.erase(key); });
  }

  /// Runs everything that is ready, lets the time pass, and runs what is due then.
  void advance(Duration time) {
    runReady();
    uptime_ += time;
    while (!delayed_.empty() && delayed_.begin()->first.first <= uptime_) {
      delayed_.extract(delayed_.begin()).mapped()();
      runReady();
    }
  }

  [[nodiscard]] bool hasDelayedWork() const { return !delayed_.empty(); }

  [[nodiscard]] Date now() const override { return {}; }
  [[nodiscard]] std::uint64_t machAbsoluteTime() const override { return 1; }
  [[nodiscard]] std::chrono::nanoseconds systemUptime() const override { return uptime_; }
  [[nodiscard]] CalendarDay localDay(Date /*date*/) const override { return {}; }

 private:
  Duration uptime_ = std::chrono::hours(1);
  int lastId_ = 0;
  std::map<std::pair<Duration, int>, std::function<void()>> delayed_;
};

}  // namespace tallowin
