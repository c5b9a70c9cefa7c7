#pragma once

#include "platform/clock.h"

namespace tallowin {

/// A clock that a test sets.
class SetClock : public Clock {
 public:
  [[nodiscard]] Date now() const override { return {}; }
  [[nodiscard]] std::uint64_t machAbsoluteTime() const override { return 1; }
  [[nodiscard]] std::chrono::nanoseconds systemUptime() const override { return uptime; }
  [[nodiscard]] std::chrono::seconds localOffset(Date /*date*/) const override { return {}; }
  [[nodiscard]] CalendarDay localDay(Date /*date*/) const override { return {}; }

  std::chrono::nanoseconds uptime = std::chrono::hours(1);
};

}  // namespace tallowin
