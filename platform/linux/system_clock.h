#pragma once

#include "platform/clock.h"

namespace tallowin {

/// The machine's clocks.
class SystemClock : public Clock {
 public:
  [[nodiscard]] Date now() const override;
  [[nodiscard]] std::uint64_t machAbsoluteTime() const override;
  [[nodiscard]] std::chrono::nanoseconds systemUptime() const override;
  [[nodiscard]] std::chrono::seconds localOffset(Date date) const override;
  [[nodiscard]] CalendarDay localDay(Date date) const override;
};

}  // namespace tallowin
