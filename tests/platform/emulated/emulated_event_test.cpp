#include "platform/emulated/emulated_event.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace tallowin {
namespace {

EmulatedEvent eventWithEverything() {
  EmulatedEvent event;
  event.timestamp = 0x0102030405060708;
  event.flags = CGEventFlag::command | CGEventFlag::shift;
  event.location = {-1.5, 1e300};
  event.fields = {{55, std::int64_t{30}}, {124, -0.25}, {132, std::int64_t{-1}}};
  event.payload = std::string("\0\xFFpayload", 9);
  return event;
}

TEST(EmulatedEventTest, survivesSerialisation) {
  const auto event = eventWithEverything();
  const auto bytes = event.serialised();
  EXPECT_EQ(bytes.substr(0, 4), std::string("\0\0\0\2", 4));
  const auto again = EmulatedEvent::deserialised(bytes);
  ASSERT_TRUE(again);
  EXPECT_EQ(again->timestamp, event.timestamp);
  EXPECT_EQ(again->flags, event.flags);
  EXPECT_EQ(again->location, event.location);
  EXPECT_EQ(again->fields, event.fields);
  EXPECT_EQ(again->payload, event.payload);
}

TEST(EmulatedEventTest, refusesBytesThatAreNoEvent) {
  auto event = eventWithEverything();
  event.payload.clear();
  const auto bytes = event.serialised();
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    EXPECT_FALSE(EmulatedEvent::deserialised(bytes.substr(0, size))) << size << " bytes";
  }
  for (std::size_t i = 0; i < 4; ++i) {
    auto otherVersion = bytes;
    otherVersion[i] = 9;
    EXPECT_FALSE(EmulatedEvent::deserialised(otherVersion)) << i;
  }
  constexpr std::size_t countOffset = 4 + 8 * 4;
  auto tooMany = bytes;
  tooMany[countOffset] = '\xFF';
  EXPECT_FALSE(EmulatedEvent::deserialised(tooMany));
  auto unknownKind = bytes;
  unknownKind[countOffset + 4 + 4] = 2;
  EXPECT_FALSE(EmulatedEvent::deserialised(unknownKind));
}

TEST(EmulatedEventTest, fieldsAreReadInTheAskedType) {
  struct Case {
    EmulatedEvent::Field field;
    std::int64_t integer;
    double real;
  };
  constexpr auto most = std::numeric_limits<std::int64_t>::max();
  constexpr auto least = std::numeric_limits<std::int64_t>::min();
  const Case cases[] = {{std::int64_t{-7}, -7, -7}, {2.9, 2, 2.9},         {-2.9, -2, -2.9},
                        {1e19, most, 1e19},         {-1e19, least, -1e19}, {HUGE_VAL, most, HUGE_VAL}};
  for (const auto& [field, integer, real] : cases) {
    EmulatedEvent event;
    event.fields[1] = field;
    EXPECT_EQ(event.integer(1), integer) << real;
    EXPECT_EQ(event.real(1), real);
  }
  EmulatedEvent event;
  event.fields[1] = std::nan("");
  EXPECT_EQ(event.integer(1), 0);
  EXPECT_EQ(event.integer(2), 0);
  EXPECT_EQ(event.real(2), 0);
}

}  // namespace
}  // namespace tallowin
