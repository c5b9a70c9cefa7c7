// Reading window lists as values: what counts as a window, and how windows are gathered into applications.

#include "windows/space_contents_reading.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unordered_set>

namespace tallowin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Applications 7 (Mail), 8 (without any name), 9 (an accessory) run; we are 500. Window 2xx is on Space 2, 1xx on 1,
/// 300 on both, 400 on none, and 404 cannot be asked for.
SpaceContentsLookups lookups() {
  return {500,
          [](ProcessID pid) -> std::optional<RunningApplication> {
            switch (pid) {
              case 7:
                return RunningApplication{7, "org.mail", "Mail"};
              case 8:
                return RunningApplication{8, std::nullopt, std::nullopt};
              case 9:
                return RunningApplication{9, "org.menu", "Menu", ActivationPolicy::accessory};
              case 500:
                return RunningApplication{500, "tallowin", "Tallowin"};
              default:
                return {};
            }
          },
          [](WindowNumber number) -> std::optional<std::vector<ManagedSpaceID>> {
            if (number == 404) {
              return {};
            }
            return number == 300   ? std::vector<ManagedSpaceID>{1, 2}
                   : number == 400 ? std::vector<ManagedSpaceID>{}
                                   : std::vector<ManagedSpaceID>{number / 100};
          }};
}

PropertyList ordinaryEntry() {
  return PropertyList::parse(R"({"kCGWindowLayer": 0, "kCGWindowOwnerPID": 7, "kCGWindowNumber": 101,
    "kCGWindowBounds": {"X": 10.5, "Y": 20, "Width": 300, "Height": 200}, "kCGWindowAlpha": 1.0,
    "kCGWindowName": "Inbox", "kCGWindowOwnerName": "Owner"})");
}

PropertyList entry(const char* changes) {
  auto result = ordinaryEntry();
  result.merge_patch(PropertyList::parse(changes));  // null takes a member away
  return result;
}

TEST(SpaceContentsReading, ReadsEveryMember) {
  const auto reading = readSpaceContents(PropertyList::array({ordinaryEntry()}), lookups());
  EXPECT_THAT(reading.windows,
              ElementsAre(WindowInfo{101, 7, "org.mail", "Mail", "Inbox", {{10.5, 20}, {300, 200}}, 1}));
  EXPECT_EQ(reading.appsBySpace, (AppsBySpace{{1, {{7, "org.mail", "Mail", {101}}}}}));
}

TEST(SpaceContentsReading, LeavesOutWhatIsNoOrdinaryWindow) {
  struct Case {
    const char* changes;
    bool counts;
  };
  const Case cases[] = {
      {R"({"kCGWindowBounds": {"Width": 60, "Height": 60.0}})", true},
      {R"({"kCGWindowBounds": {"Width": 59.9}})", false},
      {R"({"kCGWindowBounds": {"Height": 59.9}})", false},
      {R"({"kCGWindowBounds": {"Height": null}})", false},
      {R"({"kCGWindowBounds": {"Width": "300"}})", false},
      {R"({"kCGWindowBounds": {"X": null, "Y": "far"}})", true},
      {R"({"kCGWindowBounds": [10, 20, 300, 200]})", false},
      {R"({"kCGWindowBounds": null})", false},
      {R"({"kCGWindowAlpha": 0.01})", false},
      {R"({"kCGWindowAlpha": 0.011})", true},
      {R"({"kCGWindowAlpha": 0})", false},
      {R"({"kCGWindowAlpha": null})", true},
      {R"({"kCGWindowAlpha": "none"})", true},
      {R"({"kCGWindowLayer": 25})", false},
      {R"({"kCGWindowLayer": -1})", false},
      {R"({"kCGWindowLayer": 0.0})", false},
      {R"({"kCGWindowLayer": null})", false},
      {R"({"kCGWindowOwnerPID": null})", false},
      {R"({"kCGWindowOwnerPID": 4294967303})", false},
      {R"({"kCGWindowOwnerPID": 500})", false},
      {R"({"kCGWindowOwnerPID": 9})", false},
      {R"({"kCGWindowOwnerPID": 77})", false},
      {R"({"kCGWindowNumber": null})", false},
      {R"({"kCGWindowNumber": -101})", false},
      {R"({"kCGWindowNumber": 4294967397})", false},
      {R"({"kCGWindowNumber": "101"})", false},
      {R"({"kCGWindowNumber": 300})", false},
      {R"({"kCGWindowNumber": 400})", false},
      {R"({"kCGWindowNumber": 404})", false},
  };
  for (const auto& [changes, counts] : cases) {
    const auto reading = readSpaceContents(PropertyList::array({entry(changes)}), lookups());
    EXPECT_EQ(reading.windows.size(), counts ? 1U : 0U) << changes;
    EXPECT_EQ(reading.appsBySpace.size(), reading.windows.size()) << changes;
  }
}

TEST(SpaceContentsReading, NamesComeFromTheApplicationThenTheListThenNowhere) {
  const auto reading = readSpaceContents(
      PropertyList::array({entry(R"({"kCGWindowOwnerPID": 8, "kCGWindowName": null})"),
                           entry(R"({"kCGWindowOwnerPID": 8, "kCGWindowNumber": 201, "kCGWindowOwnerName": 5})")}),
      lookups());
  ASSERT_EQ(reading.windows.size(), 2U);
  EXPECT_EQ(reading.windows[0].appName, "Owner");
  EXPECT_EQ(reading.windows[0].title, "");
  EXPECT_EQ(reading.windows[1].appName, "App");
  EXPECT_EQ(reading.windows[1].bundleID, std::nullopt);
}

TEST(SpaceContentsReading, ApplicationsStandWhereTheirFrontmostWindowIs) {
  // front to back: Mail on 2, Mail on 1, 8 on 1, Mail on 1
  const auto reading =
      readSpaceContents(PropertyList::array({entry(R"({"kCGWindowNumber": 201})"), entry(R"({"kCGWindowNumber": 111})"),
                                             entry(R"({"kCGWindowNumber": 112, "kCGWindowOwnerPID": 8})"),
                                             entry(R"({"kCGWindowNumber": 110})")}),
                        lookups());
  EXPECT_EQ(reading.appsBySpace,
            (AppsBySpace{{1, {{7, "org.mail", "Mail", {111, 110}}, {8, std::nullopt, "Owner", {112}}}},
                         {2, {{7, "org.mail", "Mail", {201}}}}}));
}

TEST(SpaceContentsReading, TheFirstWindowNamesTheApplicationWhichMayEndMeanwhile) {
  auto restless = lookups();
  int asked = 0;
  restless.runningApplication = [&](ProcessID pid) {
    const auto name = "Name " + std::to_string(++asked);
    return asked <= 2 ? std::optional(RunningApplication{pid, "org.mail", name}) : std::nullopt;
  };
  const auto reading =
      readSpaceContents(PropertyList::array({entry(R"({"kCGWindowNumber": 111})"), ordinaryEntry()}), restless);
  EXPECT_EQ(reading.appsBySpace, (AppsBySpace{{1, {{7, std::nullopt, "Name 1", {111, 101}}}}}));
  EXPECT_EQ(reading.windows.back().appName, "Name 2");
}

TEST(SpaceContentsReading, AListThatIsNoneReadsAsEmpty) {
  EXPECT_EQ(readSpaceContents(std::nullopt, lookups()), SpaceContentsReading());
  for (const auto* text : {"null", "{}", "3", R"(["window"])", "[]"}) {
    EXPECT_EQ(readSpaceContents(PropertyList::parse(text), lookups()), SpaceContentsReading()) << text;
  }
  EXPECT_THAT(readSpaceContents(PropertyList::array({ordinaryEntry(), "window"}), lookups()).windows, IsEmpty());
}

TEST(WindowInfo, HashesTellWindowsAndApplicationsApart) {
  const WindowInfo window{1, 2, "b", "n", "t", {{1, 2}, {3, 4}}, 5};
  std::unordered_set<WindowInfo> windows{window, window};
  for (auto change : std::initializer_list<void (*)(WindowInfo&)>{
           [](WindowInfo& w) { w.id = 9; }, [](WindowInfo& w) { w.pid = 9; }, [](WindowInfo& w) { w.bundleID.reset(); },
           [](WindowInfo& w) { w.appName = "x"; }, [](WindowInfo& w) { w.title = "x"; },
           [](WindowInfo& w) { w.frame.size.height = 9; }, [](WindowInfo& w) { w.spaceID = 9; }}) {
    auto other = window;
    change(other);
    EXPECT_NE(std::hash<WindowInfo>{}(other), std::hash<WindowInfo>{}(window));
    windows.insert(other);
  }
  EXPECT_EQ(windows.size(), 8U);
  const AppOnSpace application{1, "b", "n", {3, 4}};
  EXPECT_NE(std::hash<AppOnSpace>{}(application), std::hash<AppOnSpace>{}({1, "b", "n", {4, 3}}));
}

}  // namespace
}  // namespace tallowin
