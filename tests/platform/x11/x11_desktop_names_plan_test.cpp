#include "platform/x11/x11_desktop_names_plan.h"

#include <gtest/gtest.h>

#include "tests/platform/x11/property_values.h"

namespace tallowin {
namespace {

using Texts = std::vector<std::string>;
using Names = std::map<ManagedSpaceID, std::string>;

X11DesktopProperties desktops(std::uint32_t count, std::string_view names, const DesktopNamesRecord& record = {},
                              std::string_view windowManager = "Openbox") {
  const bool recorded = record != DesktopNamesRecord();
  return {.numberOfDesktops = words({count}),
          .currentDesktop = words({0}),
          .desktopNames = text(names),
          .desktopNamesRecord = text(recorded ? encodeDesktopNamesRecord(record) : ""),
          .supportingWmCheck = words({7}),
          .checkWindow = 7,
          .checkWindowCheck = words({7}),
          .checkWindowName = text(windowManager)};
}

TEST(DesktopNamesRecord, ComesBackAsItWasOrNotAtAll) {
  for (const DesktopNamesRecord& record : {DesktopNamesRecord{{"a"}, {}},
                                           {{"", "", "Mail"}, {"1", ""}},
                                           {{"a", "b"}, {"c", "d", "e"}},
                                           {Texts(maximumDesktopCount, "x"), Texts(maximumDesktopCount, "")}}) {
    EXPECT_EQ(parseDesktopNamesRecord(text(encodeDesktopNamesRecord(record))), record);
  }
  for (const auto& nonsense :
       {std::string(), std::string("Mail\0", 5), std::string("2\0a\0", 4), std::string("-1\0a\0", 5),
        std::string("0\0a\0", 4), std::string("1x\0a\0", 5), std::string("99999999999999999999999\0a\0", 26)}) {
    EXPECT_EQ(parseDesktopNamesRecord(text(nonsense)), DesktopNamesRecord()) << nonsense;
  }
}

TEST(OwnDesktopNames, AreThoseThatWereNotWritten) {
  const DesktopNamesRecord record{{"Home", "2", "", "Mail"}, {"1", "2"}};
  const struct {
    const char* what;
    Texts current;
    Texts expected;
    Texts expectedIfDynamic;
  } cases[] = {
      {"as written", {"Home", "2", "", "Mail"}, {"1", "2"}, {"1", "2"}},
      {"deleted", {}, {}, {}},
      {"the window manager's again", {"1", "2"}, {"1", "2"}, {"1", "2"}},
      {"cut short", {"Home", "2"}, {"1", "2"}, {"Home", "2"}},
      {"one renamed", {"Home", "two", "", "Mail"}, {"1", "two"}, {"Home", "two", "", "Mail"}},
      {"one more", {"Home", "2", "", "Mail", "5"}, {"1", "2", "", "", "5"}, {"Home", "2", "", "Mail", "5"}},
      {"shifted", {"2", "Mail"}, {"2", "Mail"}, {"2", "Mail"}},
  };
  for (const auto& [what, current, expected, expectedIfDynamic] : cases) {
    EXPECT_EQ(ownDesktopNames(current, record, false), expected) << what;
    EXPECT_EQ(ownDesktopNames(current, record, true), expectedIfDynamic) << what << ", dynamic";
  }
}

TEST(DesktopNamesPlan, PutsTheUsersNamesOverTheOthers) {
  const struct {
    const char* what;
    std::uint32_t count;
    std::string current;
    Names names;
    Texts expected;
  } cases[] = {
      {"no names at all", 4, "", {}, {}},
      {"absent", 4, "", {{2, "Mail"}}, {"", "Mail"}},
      {"short", 4, {"1\0002\0", 4}, {{4, "Mail"}}, {"1", "2", "", "Mail"}},
      {"longer than the desktops", 2, {"1\0002\0003\0", 6}, {{1, "Mail"}, {3, "Gone"}}, {"Mail", "2", "3"}},
      {"without final zero", 2, {"1\0002", 3}, {{1, "Mail"}}, {"Mail", "2"}},
      {"no UTF-8 there", 2, {"\xFF\0002\0", 4}, {{2, "Mail"}}, {"\xEF\xBF\xBD", "Mail"}},
      {"no UTF-8 here", 1, {"1\0", 2}, {{1, "M\xFF"}}, {"M\xEF\xBF\xBD"}},
      {"zeros in a name", 1, {"1\0", 2}, {{1, {"a\0b", 3}}}, {"ab"}},
      {"nothing but a zero", 1, {"1\0", 2}, {{1, {"\0", 1}}}, {"1"}},
      {"the same name", 1, {"1\0", 2}, {{1, "1"}}, {"1"}},
  };
  for (const auto& [what, count, current, names, expected] : cases) {
    const auto plan = planDesktopNames(desktops(count, current), names);
    EXPECT_EQ(plan.wanted, expected) << what;
    EXPECT_EQ(plan.changesAnything(), plan.current != expected) << what;
    // Written so, everything is in its place; and without names it is as before.
    const auto written = desktops(count, encodeTexts(plan.wanted), plan.record);
    EXPECT_FALSE(planDesktopNames(written, names).changesAnything()) << what;
    const auto back = planDesktopNames(written, {});
    EXPECT_EQ(back.wanted, plan.current) << what;
    EXPECT_EQ(back.record, DesktopNamesRecord()) << what;
  }
}

TEST(DesktopNamesPlan, LeavesAloneWhatCannotBeReadBack) {
  const Names names = {{1, "Mail"}};
  auto gone = desktops(2, {"1\0002\0", 4});
  gone.checkWindowCheck = {};
  EXPECT_FALSE(planDesktopNames(gone, names).changesAnything()) << "no window manager";
  const std::string half(longestPropertyBytes / 2 + 1, 'x');
  EXPECT_FALSE(planDesktopNames(desktops(2, half), {{2, "Mail"}}).changesAnything()) << "too long for the record";
  EXPECT_FALSE(planDesktopNames(desktops(2, "1"), {{1, half + half}}).changesAnything()) << "a name too long";
  EXPECT_FALSE(planDesktopNames(desktops(2, std::string(5000, '\0')), names).changesAnything()) << "too many";
  EXPECT_TRUE(planDesktopNames(desktops(2, std::string(1000, '\0')), names).changesAnything());
}

TEST(X11DesktopState, KeepsTheIdsOfDynamicDesktopsWhoseNamesAreMirrored) {
  const auto plain = desktops(3, {"1\0003: web\0mail\0", 14}, {}, "i3");
  const auto before = readX11DesktopState(plain);
  const auto plan = planDesktopNames(plain, {{1, "Home"}, {before.spaces.at(2), "3: web"}});
  EXPECT_EQ(plan.wanted, (Texts{"Home", "3: web", "3: web"}));
  EXPECT_EQ(readX11DesktopState(desktops(3, encodeTexts(plan.wanted), plan.record, "i3")), before);
  // Workspace 1 has gone and i3 has written its own names: one of them where the same was written for another.
  const auto after = readX11DesktopState(desktops(2, {"3: web\0mail\0", 12}, plan.record, "i3"));
  EXPECT_EQ(after.spaces, (std::vector{before.spaces.at(1), before.spaces.at(2)}));
}

}  // namespace
}  // namespace tallowin
