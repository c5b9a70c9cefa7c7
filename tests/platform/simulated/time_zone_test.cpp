#include "platform/simulated/time_zone.h"

#include <gtest/gtest.h>
#include <string>

namespace tallowin {
namespace {

using namespace std::chrono;

Date at(int y, unsigned m, unsigned d, int h, int minute = 0) {
  return sys_days{year{y} / month{m} / day{d}} + hours{h} + minutes{minute};
}

TEST(TimeZoneTest, theDayDependsOnTheZone) {
  struct Case {
    const char* zone;
    Date date;
    CalendarDay day;
  };
  const Case cases[] = {
      {"UTC", at(2026, 2, 28, 23, 59), {2026, 2, 28}},     {"+02:00", at(2026, 2, 28, 21, 59), {2026, 2, 28}},
      {"+02:00", at(2026, 2, 28, 22, 0), {2026, 3, 1}},    {"-09:30", at(2026, 1, 1, 9, 29), {2025, 12, 31}},
      {"+00:00", at(1969, 12, 31, 23, 0), {1969, 12, 31}},
  };
  for (const auto& [name, date, day] : cases) {
    const auto zone = TimeZone::named(name);
    ASSERT_TRUE(zone) << name;
    EXPECT_EQ(zone->localDay(date), day) << name;
  }
}

TEST(TimeZoneTest, refusesNamesOfNoZone) {
  for (const auto* name : {"", "Nowhere/City", "/etc/passwd", "../zone.tab", "+2:00", "+24:00", "+01:60", "02:00",
                           "UTC+1", "Europe", "zone.tab"}) {
    EXPECT_FALSE(TimeZone::named(name)) << name;
  }
}

/// A TZif file of version 2: one hour ahead, from 1000 s on two hours ahead.
std::string twoOffsets() {
  const auto number = [](std::uint64_t value, int width) {
    std::string bytes;
    for (int i = width - 1; i >= 0; --i) {
      bytes += static_cast<char>(value >> (8 * i));
    }
    return bytes;
  };
  const auto header = [&](std::uint64_t changes, std::uint64_t types) {
    return "TZif2" + std::string(15, '\0') + number(0, 4) + number(0, 4) + number(0, 4) + number(changes, 4) +
           number(types, 4) + number(4, 4);
  };
  return header(0, 1) + number(0, 6) + "UTC" + '\0' +  //
         header(1, 2) + number(1000, 8) + '\1' + number(3600, 4) + number(0, 2) + number(7200, 4) + number(0x0100, 2) +
         "CET" + '\0' + "\n\n";
}

TEST(TimeZoneTest, readsTheChangesOfAZoneFile) {
  const auto zone = TimeZone::fromTZif(twoOffsets());
  ASSERT_TRUE(zone);
  EXPECT_EQ(zone->offsetAt(Date{seconds{999}}), 1h);
  EXPECT_EQ(zone->offsetAt(Date{seconds{1000}}), 2h);
}

TEST(TimeZoneTest, refusesZoneFilesThatAreCutOffOrPointOutside) {
  const auto whole = twoOffsets();
  const auto needed = whole.size() - 2;  // the footer is not read
  for (std::size_t size = 0; size < needed; ++size) {
    EXPECT_FALSE(TimeZone::fromTZif(whole.substr(0, size))) << size;
  }
  auto wrongType = whole;
  wrongType[44 + 10 + 44 + 8] = 2;
  EXPECT_FALSE(TimeZone::fromTZif(wrongType));
}

}  // namespace
}  // namespace tallowin
