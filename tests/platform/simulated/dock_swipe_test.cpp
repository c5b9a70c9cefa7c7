#include <cmath>
#include <gtest/gtest.h>

#include "platform/simulated/simulated_dock.h"
#include "tests/platform/simulated/swipe_events.h"

namespace tallowin {
namespace {

TEST(DockSwipeTest, refusesFieldsThatMakeNoHorizontalSwipe) {
  struct Case {
    CGEventField field;
    SimulatedEvent::Field value;
    const char* fault;
  };
  const Case cases[] = {
      {110, std::int64_t{6}, "it is no Dock swipe"},
      {123, std::int64_t{2}, "its motion is not horizontal"},
      {124, 0.0, "it has no direction"},
      {124, std::nan(""), "it has no direction"},
      {124, HUGE_VAL, "it has no direction"},
      {132, std::int64_t{0}, "its phase is unknown"},
      {132, std::int64_t{8}, "its phase is unknown"},
  };
  for (const auto& [field, value, fault] : cases) {
    auto event = swipeEvent(4, 1);
    event.fields[field] = value;
    const auto swipe = readDockSwipe(event);
    ASSERT_FALSE(swipe) << fault;
    EXPECT_EQ(swipe.error(), fault);
  }
}

TEST(DockSwipeTest, everyByteOfADeviceReportCounts) {
  const auto event = augmentedSwipeEvent(4, 1.25);
  ASSERT_EQ(event.payload.size(), 96U);
  ASSERT_TRUE(readDockSwipe(event));
  // The time may be anything but nothing.
  for (std::size_t i = 8; i < event.payload.size(); ++i) {
    auto wrong = event;
    wrong.payload[i] = static_cast<char>(wrong.payload[i] ^ 0x40);
    EXPECT_FALSE(readDockSwipe(wrong)) << "byte " << i;
  }
  auto timeless = event;
  timeless.payload.replace(0, 8, 8, '\0');
  EXPECT_FALSE(readDockSwipe(timeless));
  for (const std::size_t size : {1U, 95U, 97U}) {
    auto resized = event;
    resized.payload.resize(size);
    EXPECT_FALSE(readDockSwipe(resized)) << size << " bytes";
  }
}

TEST(DockSwipeTest, reportsHoldTheirNumbersWithinRange) {
  auto event = augmentedSwipeEvent(4, 1);
  event.fields[129] = 1e9;
  std::string velocity;
  putLittleEndian(velocity, 0x80000000, 4);
  event.payload.replace(84, 4, velocity);
  EXPECT_TRUE(readDockSwipe(event)) << "a velocity beyond the range is held at its end";
}

}  // namespace
}  // namespace tallowin
