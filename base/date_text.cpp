#include "base/date_text.h"

#include <array>
#include <cstdio>

namespace tallowin {

namespace {

struct Fields {
  int year;
  unsigned month;
  unsigned day;
  long hour;
  long minute;
  long second;
};

Fields fields(Date date) {
  const auto days = std::chrono::floor<std::chrono::days>(date);
  const std::chrono::year_month_day day(days);
  const std::chrono::hh_mm_ss time(std::chrono::floor<std::chrono::seconds>(date - days));
  return {static_cast<int>(day.year()),     static_cast<unsigned>(day.month()),
          static_cast<unsigned>(day.day()), time.hours().count(),
          time.minutes().count(),           time.seconds().count()};
}

std::string formatted(Date date, const char* format) {
  const auto f = fields(date);
  std::array<char, 64> text{};
  const int length =
      std::snprintf(text.data(), text.size(), format, f.year, f.month, f.day, f.hour, f.minute, f.second);
  return {text.data(), static_cast<std::size_t>(length)};
}

}  // namespace

std::string iso8601(Date date) {
  return formatted(date, "%04d-%02u-%02uT%02ld:%02ld:%02ldZ");
}

std::string localDateText(Date date, const Clock& clock) {
  return formatted(date + clock.localOffset(date), "%04d-%02u-%02u %02ld:%02ld");
}

std::string fileNameDate(Date date) {
  return formatted(date, "%04d%02u%02uT%02ld%02ld%02ldZ");
}

std::optional<Date> dateFromISO8601(std::string_view text) {
  int year = 0;
  unsigned month = 0;
  unsigned day = 0;
  int hour = 0;
  int minute = 0;
  int second = 0;
  std::sscanf(std::string(text).c_str(), "%4d-%2u-%2uT%2d:%2d:%2dZ", &year, &month, &day, &hour, &minute, &second);
  const std::chrono::year_month_day date{std::chrono::year(year), std::chrono::month(month), std::chrono::day(day)};
  const auto instant = std::chrono::sys_days(date) + std::chrono::hours(hour) + std::chrono::minutes(minute) +
                       std::chrono::seconds(second);
  const bool isHeld = instant >= std::chrono::ceil<std::chrono::seconds>(Date::min()) &&
                      instant <= std::chrono::floor<std::chrono::seconds>(Date::max());
  // What was read may have had another form, or be no such day.
  return isHeld && iso8601(instant) == text ? std::optional<Date>(instant) : std::nullopt;
}

}  // namespace tallowin
