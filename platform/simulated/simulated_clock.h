#pragma once

#include "platform/clock.h"
#include "platform/main_queue.h"
#include "platform/simulated/time_zone.h"

namespace tallowin {

/// When the simulation starts, as the simulated machine sees it.
struct ClockSettings {
  Date start = std::chrono::sys_days{std::chrono::year{2026} / 3 / 2} + std::chrono::hours{9};
  TimeZone timeZone;
  Duration uptime = std::chrono::hours{1};  ///< how long the machine has been up by then
};

/// The simulated machine's clock, on top of the time that has passed since the start. Main thread only.
class SimulatedClock : public Clock {
 public:
  explicit SimulatedClock(ClockSettings settings = {}) : settings_(settings), wallOffset_(Duration::zero()) {}

  /// How much time has passed since the start; never goes back.
  [[nodiscard]] virtual Duration elapsed() const = 0;

  [[nodiscard]] Date now() const override;
  [[nodiscard]] std::uint64_t machAbsoluteTime() const override;
  [[nodiscard]] std::chrono::nanoseconds systemUptime() const override;
  [[nodiscard]] std::chrono::seconds localOffset(Date date) const override;
  [[nodiscard]] CalendarDay localDay(Date date) const override;

  /// Sets the wall clock forward, or back when negative. Nothing else notices. In all it goes no further than 60 years
  /// either way.
  void jumpWallClock(Duration by);

 private:
  const ClockSettings settings_;
  Duration wallOffset_;
};

/// The simulated machine's clock where time passes as it really does, starting when it is made.
class RealTimeSimulatedClock : public SimulatedClock {
 public:
  using SimulatedClock::SimulatedClock;
  [[nodiscard]] Duration elapsed() const override { return std::chrono::steady_clock::now() - began_; }

 private:
  const std::chrono::steady_clock::time_point began_ = std::chrono::steady_clock::now();
};

}  // namespace tallowin
