// Sums of times in several time zones, and what people are shown of them.

#include "automation/time_tracker.h"

#include <gtest/gtest.h>

#include "base/unicode.h"
#include "tests/storing_program.h"

namespace tallowin {
namespace {

// A day of 23 or 25 hours is one day: a look back of n days by the calendar finds n keys, none twice and none left out,
// however close to midnight it is made.
TEST(TimeTracker, CountsBackByTheCalendarWhereClocksChange) {
  struct Case {
    const char* zone;
    const char* now;    ///< UTC
    const char* today;  ///< there
    const char* third;  ///< two days before
  };
  const Case cases[] = {
      {"Europe/Berlin", "2026-03-29T22:30:00Z", "2026-03-30", "2026-03-28"},     // 00:30 after a day of 23 hours
      {"Europe/Berlin", "2026-10-25T22:45:00Z", "2026-10-25", "2026-10-23"},     // 23:45 of a day of 25 hours
      {"Europe/Berlin", "2026-10-25T23:15:00Z", "2026-10-26", "2026-10-24"},     // half an hour later
      {"America/St_Johns", "2026-03-09T02:45:00Z", "2026-03-09", "2026-03-07"},  // 00:15, two and a half hours west
      {"America/St_Johns", "2026-11-02T03:15:00Z", "2026-11-01", "2026-10-30"},  // 23:45 of a day of 25 hours
      {"UTC", "2028-03-01T00:00:00Z", "2028-03-01", "2028-02-28"},               // a leap day between them
  };
  for (const auto& [zone, now, today, third] : cases) {
    StoringProgram program(R"({"start": ")" + std::string(now) + R"(", "timeZone": ")" + zone + "\"}");
    const auto day = program.time.localDay(program.time.now());
    EXPECT_EQ(dayKey(day), today) << zone;
    EXPECT_EQ(dayKey(daysBefore(day, 2)), third) << zone;
    const TimeRecord record = {{today, {{"a", 1}}}, {third, {{"a", 10}}}, {dayKey(daysBefore(day, 3)), {{"a", 100}}}};
    EXPECT_EQ(sumOfDays(record, day, 3).at("a"), 11) << zone << " " << now;
  }
}

TEST(TimeTracker, OnlyDaysThatExistCount) {
  const TimeRecord record = {{"2026-03-01", {{"a", 1}}}, {"2026-03-01x", {{"a", 1}}}, {"2026-03-02", {{"a", 1}}}};
  EXPECT_EQ(sumOfDays(record, {2026, 3, 2}, 1'000'000'000'000).at("a"), 2) << "no day has such a key";
}

TEST(TimeText, TablesFitTheTerminal) {
  const auto names = [](const std::string& id) { return id; };
  const auto rows =
      timeRows({{"Mail", 3600}, {"Löschen\n", 7200}, {"A", 1}, {"日本語の長い名前のある場所", 3600}}, names);
  EXPECT_EQ(timeTable({rows[0], rows[1], rows[3]}, 34),
            "Löschen   ████████████████  2h 00m\n"
            "Mail      ████████          1h 00m\n"
            "A         ▏                    <1m\n");
  EXPECT_EQ(timeTable({}, 80), "No time recorded yet.\n");
  for (const std::size_t width : {0U, 10U, 20U, 24U, 40U, 80U, 200U}) {
    const auto table = timeTable(rows, width);
    for (std::size_t at = 0; at < table.size(); at = table.find('\n', at) + 1) {
      EXPECT_LE(displayWidth(table.substr(at, table.find('\n', at) - at)), std::max<std::size_t>(width, 18)) << table;
    }
    EXPECT_EQ(std::ranges::count(table, '\n'), 4) << table;
    EXPECT_TRUE(isValidUTF8(table)) << table;
  }
}

}  // namespace
}  // namespace tallowin
