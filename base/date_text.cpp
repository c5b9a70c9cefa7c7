#include "base/date_text.h"

#include <array>
#include <charconv>
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

/// The number that `digits` writes, all of it decimal digits.
std::optional<int> number(std::string_view digits) {
  int value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  const bool all = error == std::errc() && end == digits.data() + digits.size() && digits.front() != '-';
  return all ? std::optional(value) : std::nullopt;
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
  constexpr std::string_view form = "dddd-dd-ddTdd:dd:ddZ";
  if (text.size() != form.size()) {
    return std::nullopt;
  }
  for (std::size_t i = 0; i < form.size(); ++i) {
    if (form[i] != 'd' && text[i] != form[i]) {
      return std::nullopt;
    }
  }
  const auto year = number(text.substr(0, 4));
  const auto month = number(text.substr(5, 2));
  const auto day = number(text.substr(8, 2));
  const auto hour = number(text.substr(11, 2));
  const auto minute = number(text.substr(14, 2));
  const auto second = number(text.substr(17, 2));
  if (!year || !month || !day || !hour || !minute || !second || *hour > 23 || *minute > 59 || *second > 59) {
    return std::nullopt;
  }
  const std::chrono::year_month_day date{std::chrono::year(*year), std::chrono::month(static_cast<unsigned>(*month)),
                                         std::chrono::day(static_cast<unsigned>(*day))};
  if (!date.ok()) {
    return std::nullopt;
  }
  const auto instant = std::chrono::sys_days(date) + std::chrono::hours(*hour) + std::chrono::minutes(*minute) +
                       std::chrono::seconds(*second);
  const bool held = instant >= std::chrono::ceil<std::chrono::seconds>(Date::min()) &&
                    instant <= std::chrono::floor<std::chrono::seconds>(Date::max());
  return held ? std::optional<Date>(instant) : std::nullopt;
}

}  // namespace tallowin
