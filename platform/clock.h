#pragma once

#include <chrono>
#include <cstdint>

namespace tallowin {

/// A wall-clock instant.
using Date = std::chrono::system_clock::time_point;

/// A day of the Gregorian calendar in the machine's time zone.
struct CalendarDay {
  int year = 1970;
  int month = 1;  ///< 1 to 12
  int day = 1;    ///< 1 to 31
  bool operator==(const CalendarDay&) const = default;
};

/// What time it is. Any thread.
class Clock {
 public:
  virtual ~Clock() = default;

  /// The wall clock, which a user or a time server may set back or forward.
  [[nodiscard]] virtual Date now() const = 0;

  /// Ticks since the machine started (mach_absolute_time), never going back. One tick is one nanosecond.
  [[nodiscard]] virtual std::uint64_t machAbsoluteTime() const = 0;

  /// How long the machine has been up (NSProcessInfo systemUptime).
  [[nodiscard]] virtual std::chrono::nanoseconds systemUptime() const = 0;

  /// How far local time is ahead of UTC at that instant, in the machine's current time zone.
  [[nodiscard]] virtual std::chrono::seconds localOffset(Date date) const = 0;

  /// The day that `date` falls on in the machine's current time zone.
  [[nodiscard]] virtual CalendarDay localDay(Date date) const = 0;
};

}  // namespace tallowin
