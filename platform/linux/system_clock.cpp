#include "platform/linux/system_clock.h"

#include <ctime>

namespace tallowin {

namespace {

std::tm localTime(Date date) {
  const std::time_t seconds = std::chrono::system_clock::to_time_t(date);
  std::tm local{};
  ::tzset();
  ::localtime_r(&seconds, &local);
  return local;
}

}  // namespace

Date SystemClock::now() const {
  return std::chrono::system_clock::now();
}

std::uint64_t SystemClock::machAbsoluteTime() const {
  return static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
}

std::chrono::nanoseconds SystemClock::systemUptime() const {
  timespec time{};
  ::clock_gettime(CLOCK_BOOTTIME, &time);
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

std::chrono::seconds SystemClock::localOffset(Date date) const {
  return std::chrono::seconds(localTime(date).tm_gmtoff);
}

CalendarDay SystemClock::localDay(Date date) const {
  const auto local = localTime(date);
  constexpr int firstYear = 1900;
  return {firstYear + local.tm_year, local.tm_mon + 1, local.tm_mday};
}

}  // namespace tallowin
