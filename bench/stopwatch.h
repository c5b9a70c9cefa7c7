#pragma once

#include <chrono>

namespace tallowin::bench {

/// Milliseconds since it was made.
class Stopwatch {
 public:
  using Clock = std::chrono::steady_clock;

  [[nodiscard]] double until(Clock::time_point end) const {
    return std::chrono::duration<double, std::milli>(end - began_).count();
  }
  [[nodiscard]] double now() const { return until(Clock::now()); }

 private:
  Clock::time_point began_ = Clock::now();
};

}  // namespace tallowin::bench
