// What the root window's properties say of the desktops, and which names are to be written over the window manager's.

#include <gtest/gtest.h>
#include <set>

#include "platform/x11/x11_desktop_names.h"
#include "platform/x11/x11_desktop_reader.h"
#include "tests/platform/x11/property_values.h"

namespace tallowin {
namespace {

constexpr std::uint32_t checkWindow = 0x200001;
using Texts = std::vector<std::string>;
using Names = std::map<ManagedSpaceID, std::string>;

X11DesktopProperties desktops(std::uint32_t count, std::string_view names, std::uint32_t current = 0,
                              const DesktopNamesRecord& record = {}, std::string_view windowManager = "Openbox") {
  const bool recorded = record != DesktopNamesRecord();
  return {.numberOfDesktops = words({count}),
          .currentDesktop = words({current}),
          .desktopNames = text(names),
          .desktopNamesRecord = text(recorded ? encodeDesktopNamesRecord(record) : ""),
          .supportingWmCheck = words({checkWindow}),
          .checkWindow = checkWindow,
          .checkWindowCheck = words({checkWindow}),
          .checkWindowName = text(windowManager)};
}

DesktopNamesPlan planFor(const X11DesktopProperties& properties, const Names& names) {
  return planDesktopNames(properties, readX11DesktopState(properties), names);
}

TEST(X11DesktopState, NumbersDesktopsByPositionWhateverTheirNames) {
  const auto state = readX11DesktopState(desktops(3, {"7: x\0", 5}, 1));
  EXPECT_EQ(
      state,
      (X11DesktopState{
          .checkWindow = checkWindow, .managerName = "Openbox", .dynamic = false, .spaces = {1, 2, 3}, .current = 1}));
  EXPECT_EQ(state.indexOf(4), std::nullopt);
  EXPECT_EQ(readX11DesktopState(desktops(3, "", 3)).active(), std::nullopt) << "there is no such desktop";
}

TEST(X11DesktopState, IsEmptyWithoutARunningWindowManager) {
  const auto good = desktops(4, "");
  auto rootOnly = good;  // what a window manager that was killed leaves behind
  rootOnly.checkWindowCheck = {};
  auto another = good;
  another.checkWindowCheck = words({checkWindow + 1});
  auto stale = good;  // read from the window of the one before
  stale.checkWindow = checkWindow + 1;
  stale.checkWindowCheck = words({checkWindow + 1});
  auto none = good;
  none.supportingWmCheck = none.checkWindowCheck = words({0});
  none.checkWindow = 0;
  for (const auto& bad : {rootOnly, another, stale, none, X11DesktopProperties{}}) {
    EXPECT_EQ(readX11DesktopState(bad), X11DesktopState{});
  }
  for (const auto nonsense : {0U, maximumDesktopCount + 1, 0xFFFFFFFFU}) {
    EXPECT_TRUE(readX11DesktopState(desktops(nonsense, "")).spaces.empty());
  }
}

TEST(NamedSpaceIDs, TakesTheLeadingNumberOrAHashThatIsNone) {
  constexpr ManagedSpaceID lowestHash = ManagedSpaceID{1} << 48;
  const struct {
    const char* name;
    std::optional<ManagedSpaceID> expected;  // nothing for a hash
  } cases[] = {
      {"1", 1},
      {"10: mail", 10},
      {"007", 7},
      {"2147483647", 2147483647},
      {"2147483648", std::nullopt},
      {"0", std::nullopt},
      {"-3", std::nullopt},
      {" 3", std::nullopt},
      {"mail", std::nullopt},
  };
  for (const auto& [name, expected] : cases) {
    const auto id = namedSpaceIDs({name}, 1).at(0);
    if (expected) {
      EXPECT_EQ(id, *expected) << name;
    } else {
      EXPECT_GE(id, lowestHash) << name;
      EXPECT_LT(id, 2 * lowestHash) << name;
    }
  }
}

TEST(NamedSpaceIDs, AreAllDifferentAndStayWithTheirNames) {
  const auto ids = namedSpaceIDs({"2: a", "2: b", "2", "mail", "mail", "", "", "2: a"}, 12);  // four have no name
  EXPECT_EQ(std::set(ids.begin(), ids.end()).size(), 12U);
  EXPECT_EQ(ids[0], 2);
  EXPECT_EQ(ids[3], namedSpaceIDs({"mail"}, 1)[0]);
}

TEST(TellingDesktopNames, AreThoseThatAreNoDefaultsAndNotOurs) {
  const DesktopNamesRecord ours{.written = {"Mail", "2"}, .own = {"one", "2"}};
  const struct {
    Texts names;
    Names expected;
    DesktopNamesRecord record = {};
    const char* windowManager = "Openbox";
  } cases[] = {
      {{"Workspace 1", "Workspace 2"}, {}},
      {{"Mail", "2", ""}, {{1, "Mail"}}},
      {{"Workspace 1", "web"}, {{1, "Workspace 1"}, {2, "web"}}},
      {{"2", "1", "3"}, {{1, "2"}, {2, "1"}}},
      {{"Mail", "2", "3"}, {{1, "one"}}, ours},
      {{}, {}},
      {{"7", "2: web"}, {{2, "2: web"}}, {}, "i3"},
  };
  for (const auto& [names, expected, record, windowManager] : cases) {
    const auto properties = desktops(3, encodeTexts(names), 0, record, windowManager);
    EXPECT_EQ(tellingDesktopNames(properties, readX11DesktopState(properties)), expected)
        << testing::PrintToString(names);
  }
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
      {"absent", 4, "", {{2, "Mail"}}, {"Desktop 1", "Mail", "Desktop 3", "Desktop 4"}},
      {"short", 4, {"1\0002\0", 4}, {{4, "Mail"}}, {"1", "2", "3", "Mail"}},
      {"short, with a stem", 3, {"Workspace 1\0\0", 13}, {{2, "Mail"}}, {"Workspace 1", "Mail", "Workspace 3"}},
      {"short, without a stem", 3, {"1\000web\0", 6}, {{1, "Mail"}}, {"Mail", "web", "Desktop 3"}},
      {"longer than the desktops", 2, {"1\0002\0003\0", 6}, {{1, "Mail"}, {3, "Gone"}}, {"Mail", "2", "3"}},
      {"no UTF-8 there", 2, {"\xFF\0002\0", 4}, {{2, "Mail"}}, {"\xEF\xBF\xBD", "Mail"}},
      {"no UTF-8 here", 1, {"1\0", 2}, {{1, "M\xFF"}}, {"M\xEF\xBF\xBD"}},
      {"zeros in a name", 1, {"1\0", 2}, {{1, {"a\0b", 3}}}, {"ab"}},
      {"the same name", 1, {"1\0", 2}, {{1, "1"}}, {"1"}},
  };
  for (const auto& [what, count, current, names, expected] : cases) {
    const auto plan = planFor(desktops(count, current), names);
    EXPECT_EQ(plan.wanted, expected) << what;
    EXPECT_EQ(plan.changesAnything(), plan.current != expected) << what;
    // Written so, everything is in its place; and without names it is as before.
    const auto written = desktops(count, encodeTexts(plan.wanted), 0, plan.record);
    EXPECT_FALSE(planFor(written, names).changesAnything()) << what;
    const auto back = planFor(written, {});
    EXPECT_EQ(back.wanted, plan.current) << what;
    EXPECT_EQ(back.record, DesktopNamesRecord()) << what;
  }
}

TEST(DesktopNamesPlan, LeavesAloneWhatCannotBeReadBack) {
  const Names names = {{1, "Mail"}};
  auto gone = desktops(2, {"1\0002\0", 4});
  gone.checkWindowCheck = {};
  EXPECT_FALSE(planFor(gone, names).changesAnything()) << "no window manager";
  const std::string half(longestPropertyBytes / 2 + 1, 'x');
  EXPECT_FALSE(planFor(desktops(2, half), {{2, "Mail"}}).changesAnything()) << "too long for the record";
  EXPECT_FALSE(planFor(desktops(2, "1"), {{1, half + half}}).changesAnything()) << "a name too long";
  EXPECT_FALSE(planFor(desktops(2, std::string(5000, '\0')), names).changesAnything()) << "too many";
  EXPECT_TRUE(planFor(desktops(2, std::string(1000, '\0')), names).changesAnything());
}

}  // namespace
}  // namespace tallowin
