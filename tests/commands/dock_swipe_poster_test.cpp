// The numbers in a gesture, and which way its fingers go.

#include "commands/driven/dock_swipe_poster.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace tallowin {
namespace {

TEST(ScrollingDirection, IsNaturalUnlessThePreferenceIsZeroOrFalse) {
  EXPECT_TRUE(isNaturalScrolling(std::nullopt));
  for (const auto* natural : {"1", "-3", "\"no\"", "true"}) {
    EXPECT_TRUE(isNaturalScrolling(PropertyList::parse(natural))) << natural;
  }
  for (const auto* reversed : {"0", "false"}) {
    EXPECT_FALSE(isNaturalScrolling(PropertyList::parse(reversed))) << reversed;
  }
}

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

}  // namespace
}  // namespace tallowin
