#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "platform/simulated/simulated_event.h"

namespace tallowin {
namespace {

SimulatedEvent eventWithEverything() {
  SimulatedEvent event;
  event.timestamp = 0x0102030405060708;
  event.flags = CGEventFlag::command | CGEventFlag::shift;
  event.location = {-1.5, 1e300};
  event.fields = {{55, std::int64_t{30}}, {124, -0.25}, {132, std::int64_t{-1}}};
  event.payload = std::string("\0\xFFpayload", 9);
  return event;
}

TEST(SimulatedEventTest, survivesSerialisation) {
  const auto event = eventWithEverything();
  const auto bytes = event.serialised();
  const auto again = SimulatedEvent::deserialised(bytes);
  ASSERT_TRUE(again);
  EXPECT_EQ(again->timestamp, event.timestamp);
  EXPECT_EQ(again->flags, event.flags);
  EXPECT_EQ(again->location, event.location);
  EXPECT_EQ(again->fields, event.fields);
  EXPECT_EQ(again->payload, event.payload);
}

TEST(SimulatedEventTest, refusesBytesThatAreNoEvent) {
  auto event = eventWithEverything();
  event.payload.clear();
  const auto bytes = event.serialised();
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    EXPECT_FALSE(SimulatedEvent::deserialised(bytes.substr(0, size))) << size << " bytes";
  }
  for (const auto* text :
       {"\n", "5\n", "[1,2,3]\n", "[1,2,3,\"4\"]\n", "[1,2,3,4,5]\n", "[1,2,3,4,[5]]\n", "[1,2,3,4,[5,null]]\n"}) {
    EXPECT_FALSE(SimulatedEvent::deserialised(text)) << text;
  }
}

TEST(SimulatedEventTest, fieldsAreReadInTheAskedType) {
  struct Case {
    SimulatedEvent::Field field;
    std::int64_t integer;
    double real;
  };
  constexpr auto most = std::numeric_limits<std::int64_t>::max();
  constexpr auto least = std::numeric_limits<std::int64_t>::min();
  const Case cases[] = {{std::int64_t{-7}, -7, -7}, {2.9, 2, 2.9},         {-2.9, -2, -2.9},
                        {1e19, most, 1e19},         {-1e19, least, -1e19}, {HUGE_VAL, most, HUGE_VAL}};
  for (const auto& [field, integer, real] : cases) {
    SimulatedEvent event;
    event.fields[1] = field;
    EXPECT_EQ(event.integer(1), integer) << real;
    EXPECT_EQ(event.real(1), real);
  }
  SimulatedEvent event;
  event.fields[1] = std::nan("");
  EXPECT_EQ(event.integer(1), 0);
  EXPECT_EQ(event.integer(2), 0);
  EXPECT_EQ(event.real(2), 0);
}

}  // namespace
}  // namespace tallowin
