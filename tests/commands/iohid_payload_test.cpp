#include "commands/iohid_payload.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace tallowin {
namespace {

TEST(FixedPoint, CutsOffTowardZeroAndStaysWithinRange) {
  const std::pair<double, std::int32_t> cases[] = {
      {0.0, 0},
      {0.1, 6553},
      {-0.1, -6553},
      {1.0, 0x10000},
      {-9999.0, -655294464},
      {32767.99999, 0x7fffffff},
      {32768.0, 0x7fffffff},
      {-32768.0, std::numeric_limits<std::int32_t>::min()},
      {-1e300, std::numeric_limits<std::int32_t>::min()},
      {std::numeric_limits<double>::infinity(), 0x7fffffff},
      {std::nan(""), 0},
  };
  for (const auto& [value, expected] : cases) {
    EXPECT_EQ(fixed(value), expected) << value;
  }
}

std::string hex(const std::string& bytes) {
  constexpr auto digits = "0123456789abcdef";
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    text += {digits[byte >> 4], digits[byte & 15]};
  }
  return text;
}

TEST(IOHIDPayload, IsRightToTheByte) {
  const SwipeReport report{.timestamp = 0x0102030405060708,
                           .phase = 4,
                           .positionX = 0.1,
                           .positionY = 0,
                           .progress = -1.0,
                           .velocity = -9999.0};
  EXPECT_EQ(hex(iohidPayload(report)),
            // when, then two empty double words and the number of events
            "0807060504030201"
            "0000000000000000"
            "0000000000000000"
            "02000000"
            // the swipe: length 40, type 23, phase in the top byte
            "28000000"
            "17000000"
            "00000004"
            "00000000"
            // position 0.1, 0; nothing; flavour; progress +1.0 as 16.16
            "99190000"
            "00000000"
            "0000000000000000"
            "01000300"
            "00000100"
            // the velocity: length 28, type 9, depth 1, +9999.0 as 16.16
            "1c000000"
            "09000000"
            "00000000"
            "01000000"
            "00000f27"
            "00000000"
            "00000000");
}

}  // namespace
}  // namespace tallowin
