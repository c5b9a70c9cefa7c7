#include "platform/x11/x11_desktop_state.h"

#include <gtest/gtest.h>
#include <set>

#include "tests/platform/x11/property_values.h"

namespace tallowin {
namespace {

constexpr std::uint32_t checkWindow = 0x200001;

X11DesktopProperties properties(std::uint32_t count, std::uint32_t current, std::string_view names = {},
                                std::string_view windowManager = "Openbox") {
  return {.numberOfDesktops = words({count}),
          .currentDesktop = words({current}),
          .desktopNames = text(names),
          .desktopNamesRecord = {},
          .supportingWmCheck = words({checkWindow}),
          .checkWindow = checkWindow,
          .checkWindowCheck = words({checkWindow}),
          .checkWindowName = text(windowManager)};
}

TEST(X11DesktopState, NumbersDesktopsByPositionWhateverTheirNames) {
  const auto state = readX11DesktopState(properties(3, 1, std::string("7: x\0", 5)));
  EXPECT_EQ(
      state,
      (X11DesktopState{
          .checkWindow = checkWindow, .managerName = "Openbox", .dynamic = false, .spaces = {1, 2, 3}, .current = 1}));
  EXPECT_EQ(state.active(), 2);
  EXPECT_EQ(state.indexOf(3), 2U);
  EXPECT_EQ(state.indexOf(4), std::nullopt);
  EXPECT_EQ(state.indexOf(0), std::nullopt);
}

TEST(X11DesktopState, HasNoCurrentDesktopThatDoesNotExist) {
  const auto state = readX11DesktopState(properties(3, 3));
  EXPECT_EQ(state.spaces.size(), 3U);
  EXPECT_EQ(state.active(), std::nullopt);
}

TEST(X11DesktopState, IsEmptyWithoutARunningWindowManager) {
  const auto good = properties(4, 0);
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
  EXPECT_TRUE(readX11DesktopState(properties(0xFFFFFFFF, 0)).spaces.empty());
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
      {"99999999999999999999", std::nullopt},
      {"0", std::nullopt},
      {"-3", std::nullopt},
      {"+3", std::nullopt},
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

TEST(NamedSpaceIDs, AreAllDifferent) {
  const std::vector<std::string> names = {"2: a", "2: b", "2", "mail", "mail", "", "", "2: a"};
  const auto ids = namedSpaceIDs(names, 12);  // four more than there are names
  EXPECT_EQ(std::set(ids.begin(), ids.end()).size(), 12U);
  EXPECT_EQ(ids[0], 2);
  EXPECT_EQ(ids[3], namedSpaceIDs({"mail"}, 1)[0]) << "a name keeps its id wherever it stands";
  EXPECT_EQ(namedSpaceIDs(names, 2).size(), 2U) << "names that are left over are ignored";
}

TEST(Fnv1a, GivesThePublishedValues) {
  EXPECT_EQ(fnv1a(""), 0xcbf29ce484222325U);
  EXPECT_EQ(fnv1a("a"), 0xaf63dc4c8601ec8cU);
  EXPECT_EQ(fnv1a("foobar"), 0x85944171f73967e8U);
}

}  // namespace
}  // namespace tallowin
