#include "platform/simulated/virtual_time.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "base/date_text.h"
#include "platform/simulated/time_zone.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

class VirtualTimeTest : public testing::Test {
 protected:
  std::function<void()> note(const std::string& what) {
    return [this, what] { seen.push_back(what); };
  }

  VirtualTime time;
  std::vector<std::string> seen;
};

TEST_F(VirtualTimeTest, workIsCancelledFromInsideTheRunningBatch) {
  WorkItem second;
  const auto first = time.after(1ms, [&] {
    second.cancel();
    seen.emplace_back("first");
  });
  second = time.after(1ms, note("second"));
  auto third = time.after(1ms, note("third"));
  third = time.after(1ms, note("in its place"));
  time.advance(5ms);
  EXPECT_THAT(seen, ElementsAre("first", "in its place"));
}

TEST_F(VirtualTimeTest, anItemMayBeDestroyedInsideItsOwnWork) {
  auto timer = std::make_unique<WorkItem>();
  *timer = time.every(1ms, 0ms, [&, held = std::string(100, 'x')] {
    timer.reset();
    seen.push_back(held.substr(0, 1));
  });
  time.advance(10ms);
  EXPECT_THAT(seen, ElementsAre("x"));
}

TEST_F(VirtualTimeTest, cancelledWorkLetsGoOfWhatItHolds) {
  const auto held = std::make_shared<int>(1);
  auto item = time.after(1h, [held] {});
  EXPECT_EQ(held.use_count(), 2);
  item.cancel();
  EXPECT_EQ(held.use_count(), 1);

  auto shortLived = std::make_unique<VirtualTime>();
  item = shortLived->after(1s, [held] {});
  shortLived.reset();  // which its items may outlive
  EXPECT_EQ(held.use_count(), 1);
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
  EXPECT_EQ(zone->offsetAt(Date{999s}), 1h);
  EXPECT_EQ(zone->offsetAt(Date{1000s}), 2h);
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
