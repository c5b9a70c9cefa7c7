#include "platform/simulated/simulated_clock.h"

#include <algorithm>

namespace tallowin {

Date SimulatedClock::now() const {
  return settings_.start + std::chrono::duration_cast<Date::duration>(elapsed() + wallOffset_);
}

std::uint64_t SimulatedClock::machAbsoluteTime() const {
  return static_cast<std::uint64_t>(systemUptime().count());
}

std::chrono::nanoseconds SimulatedClock::systemUptime() const {
  return settings_.uptime + elapsed();
}

void SimulatedClock::jumpWallClock(Duration by) {
  constexpr Duration most = std::chrono::years{60};
  const Duration jump = std::clamp(by, -most, most);
  wallOffset_ = std::clamp(wallOffset_ + jump, -most, most);
}

std::chrono::seconds SimulatedClock::localOffset(Date date) const {
  return settings_.timeZone.offsetAt(date);
}

CalendarDay SimulatedClock::localDay(Date date) const {
  return settings_.timeZone.localDay(date);
}

}  // namespace tallowin
