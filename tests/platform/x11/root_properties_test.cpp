#include "platform/x11/root_properties.h"

#include <gtest/gtest.h>

#include "tests/platform/x11/property_values.h"

namespace tallowin {
namespace {

TEST(RootProperties, DesktopCountIsTakenOnlyWhenItMakesSense) {
  const struct {
    const char* what;
    X11Property property;
    std::optional<std::size_t> expected;
  } cases[] = {
      {"absent", {}, std::nullopt},
      {"one", words({1}), 1},
      {"the first of several", words({4, 9}), 4},
      {"none", words({0}), std::nullopt},
      {"the most", words({maximumDesktopCount}), maximumDesktopCount},
      {"more than the most", words({maximumDesktopCount + 1}), std::nullopt},
      {"four billion", words({0xFFFFFFFF}), std::nullopt},
      {"cut short", {.format = 32, .bytes = "\x04"}, std::nullopt},
      {"bytes", text(std::string_view("\x04\0\0\0", 4)), std::nullopt},
      {"format 16", {.format = 16, .bytes = std::string("\x04\0\0\0", 4)}, std::nullopt},
  };
  for (const auto& [what, property, expected] : cases) {
    EXPECT_EQ(parseDesktopCount(property), expected) << what;
  }
}

TEST(RootProperties, DesktopNamesAreReadHoweverTheyEnd) {
  using Names = std::vector<std::string>;
  const struct {
    const char* what;
    X11Property property;
    Names expected;
  } cases[] = {
      {"absent", {}, {}},
      {"words", words({0x616161}), {}},
      {"with final zero", text({"Mail\0Code\0", 10}), {"Mail", "Code"}},
      {"without final zero", text({"Mail\0Code", 9}), {"Mail", "Code"}},
      {"an empty one between", text({"Mail\0\0Code\0", 11}), {"Mail", "", "Code"}},
      {"only zeros", text({"\0\0", 2}), {"", ""}},
      {"beyond ASCII", text({"Pr\xC3\xA9sentation\0\xE6\x97\xA5\0", 18}), {"Pr\xC3\xA9sentation", "\xE6\x97\xA5"}},
      {"no UTF-8", text({"a\xFF\0b", 4}), {"a\xEF\xBF\xBD", "b"}},
  };
  for (const auto& [what, property, expected] : cases) {
    EXPECT_EQ(parseDesktopNames(property), expected) << what;
  }
  EXPECT_EQ(parseDesktopNames(text(std::string(100'000, '\0'))).size(), maximumDesktopCount);
}

TEST(RootProperties, BytesThatAreNoUtf8AreReplacedOneByOne) {
  const std::string bad = "\xEF\xBF\xBD";
  const struct {
    std::string bytes;
    std::string expected;
  } cases[] = {
      {"", ""},
      {"\xF0\x9F\x98\x80", "\xF0\x9F\x98\x80"},
      {"\x80", bad},                                // continuation without a beginning
      {"\xC3", bad},                                // beginning without a continuation
      {"\xC0\xAF", bad + bad},                      // overlong
      {"\xE0\x80\x80", bad + bad + bad},            // overlong
      {"\xED\xA0\x80", bad + bad + bad},            // surrogate
      {"\xF4\x90\x80\x80", bad + bad + bad + bad},  // beyond U+10FFFF
      {"\xE6\x97x", bad + bad + "x"},               // cut off in the middle
  };
  for (const auto& [bytes, expected] : cases) {
    EXPECT_EQ(validUtf8(bytes), expected);
  }
}

}  // namespace
}  // namespace tallowin
