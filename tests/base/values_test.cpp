// Reading property lists, JSON text and dates: tables of what is understood and what is not.

#include <gtest/gtest.h>

#include "base/app_paths.h"
#include "base/date_text.h"
#include "base/json_text.h"
#include "base/property_list_reading.h"
#include "platform/simulated/virtual_time.h"

namespace tallowin {
namespace {

TEST(PropertyListReading, NumbersAreReadByTheirOwnTypeAndRange) {
  struct Case {
    const char* json;
    std::optional<std::int64_t> integer;
    std::optional<std::int32_t> integer32;
    std::optional<double> real;
  };
  const Case cases[] = {
      {"7", 7, 7, 7.0},
      {"-1", -1, -1, -1.0},
      {"3.0", std::nullopt, std::nullopt, 3.0},
      {"true", std::nullopt, std::nullopt, std::nullopt},
      {"\"7\"", std::nullopt, std::nullopt, std::nullopt},
      {"null", std::nullopt, std::nullopt, std::nullopt},
      {"2147483648", 2147483648, std::nullopt, 2147483648.0},
      {"-2147483648", -2147483648, -2147483648, -2147483648.0},
      {"9223372036854775807", 9223372036854775807, std::nullopt, 9223372036854775807.0},
      {"9223372036854775808", std::nullopt, std::nullopt, 9223372036854775808.0},
  };
  for (const auto& [json, integer, integer32, real] : cases) {
    const auto value = PropertyList::parse(json);
    EXPECT_EQ(property_list::integer(value), integer) << json;
    EXPECT_EQ(property_list::integer32(value), integer32) << json;
    EXPECT_EQ(property_list::real(value), real) << json;
  }
}

TEST(JSONText, MistakesAreSaidWithTheirPlace) {
  const std::pair<std::string, std::string> cases[] = {
      {"{\"a\": 1,\n \"b\": }", "line 2, column 7"},
      {"", "line 1, column 1"},
      {"{} {}", "line 1, column 4"},
      {"\"\xff\"", "UTF-8"},
      {std::string(1'000'000, '['), "deeper than 200"},
  };
  for (const auto& [text, expected] : cases) {
    const auto parsed = parseJSON(text);
    ASSERT_FALSE(parsed) << text.substr(0, 40);
    EXPECT_NE(parsed.error().find(expected), std::string::npos) << parsed.error();
    EXPECT_EQ(parsed.error().find("json.exception"), std::string::npos) << parsed.error();
  }
}

TEST(JSONText, RecordsAreSortedAndInvalidTextIsReplaced) {
  EXPECT_EQ(prettyJSON({{"b", 1}, {"a", "\xff"}}), "{\n  \"a\": \"\xef\xbf\xbd\",\n  \"b\": 1\n}\n");
  EXPECT_EQ(compactJSON("\x1b \x7f \xc2\x9b \xc2\xa0 \u00e9"), "\"\\u001b \\u007f \\u009b \xc2\xa0 \u00e9\"")
      << "terminals obey no text";
}

TEST(DateText, DatesComeBackAndImpossibleOnesDoNot) {
  const Date date = std::chrono::sys_days(std::chrono::year(2024) / 2 / 29) + std::chrono::seconds(86399);
  EXPECT_EQ(iso8601(date + std::chrono::milliseconds(999)), "2024-02-29T23:59:59Z");
  EXPECT_EQ(fileNameDate(date), "20240229T235959Z");
  const RealTimeSimulatedClock clock({.timeZone = *TimeZone::named("+02:00")});
  EXPECT_EQ(localDateText(date, clock), "2024-03-01 01:59");
  EXPECT_EQ(dateFromISO8601("2024-02-29T23:59:59Z"), date);
  for (const auto* text :
       {"", "2024-02-29", "2023-02-29T00:00:00Z", "2024-13-01T00:00:00Z", "2024-02-29T24:00:00Z",
        "2024-02-29T23:59:59.5Z", "2024-02-29T23:59:59z", "2024-02-29 23:59:59Z", "2024-02--9T23:59:59Z",
        "2024-02-29T23:59:59+01:00", "1677-01-01T00:00:00Z", "4052-01-01T00:00:00Z"}) {
    EXPECT_EQ(dateFromISO8601(text), std::nullopt) << text;
  }
}

TEST(StandardFolders, EmptyAndRelativeVariablesCountAsUnset) {
  const auto folders = standardFolders("/home/u", [](const char* name) -> std::optional<std::string> {
    const std::string variable = name;
    if (variable == "XDG_DATA_HOME") {
      return "/data";
    }
    return variable == "XDG_CONFIG_HOME" ? "relative" : "";
  });
  EXPECT_EQ(folders.applicationSupport, "/data");
  EXPECT_EQ(folders.configuration, "/home/u/.config");
  EXPECT_EQ(folders.cache, "/home/u/.cache");
  EXPECT_EQ(folders.runtime, "");
  EXPECT_EQ(foldersBelow("/tmp/x").applicationSupport, "/tmp/x/.local/share");
}

}  // namespace
}  // namespace tallowin
