// The contents of Spaces: when they are read and who is told of what, on a simulated desktop; and what counts as a
// window in a list of windows, and how windows are gathered into applications.

#include "windows/space_contents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>

#include "tests/simulated_program.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// Counts how often a window list is read, can keep it from being read, and lets something happen while it is.
class CountedWindowList : public WindowList {
 public:
  explicit CountedWindowList(WindowList& list) : list_(list) {}

  std::optional<PropertyList> CGWindowListCopyWindowInfo(std::uint32_t options, WindowNumber relativeTo) override {
    ++readings;
    auto list = works ? list_.CGWindowListCopyWindowInfo(options, relativeTo) : std::nullopt;
    if (const auto happens = std::exchange(meanwhile, nullptr)) {
      happens();
    }
    return list;
  }

  std::function<void()> meanwhile;
  int readings = 0;
  bool works = true;

 private:
  WindowList& list_;
};

struct ContentsProgram : SimulatedProgram {
  explicit ContentsProgram(std::string_view scenarioJSON) : SimulatedProgram(scenarioJSON) {
    contents->onNewWindows = [this](const std::vector<WindowInfo>& windows) {
      for (const auto& window : windows) {
        newWindows.push_back(window.id);
      }
    };
  }

  /// Gives a window another number, as if it had been closed and one like it opened.
  void closeAndOpen(WindowNumber closed, WindowNumber opened) { state().window(closed)->number = opened; }

  [[nodiscard]] std::vector<WindowNumber> numbers(const std::vector<WindowInfo>& windows) const {
    std::vector<WindowNumber> result;
    std::ranges::transform(windows, std::back_inserter(result), &WindowInfo::id);
    return result;
  }

  CountedWindowList windowList{desktop.windowList()};
  DrivenWindows counted{{bridge, desktop.accessibility(), windowList}};
  std::vector<WindowNumber> newWindows;
  const Platform countedPlatform = simulatedPlatform(desktop, spaces, driven, counted, preferences, images, time);
  std::optional<SpaceContents> contents{std::in_place, countedPlatform};
};

constexpr auto mailAndNotes = R"({
  "applications": [{"pid": 7, "name": "Mail", "bundleID": "org.mail", "active": true}, {"pid": 8, "name": "Notes"}],
  "windows": [{"number": 1, "pid": 7, "title": "Inbox", "space": 1}, {"number": 2, "pid": 8, "space": 2},
              {"number": 3, "pid": 7, "space": 2}, {"number": 4, "pid": 8, "spaces": [1, 2]}],
  "script": [{"at": 1, "do": "openWindow", "number": 5, "pid": 8, "space": 1},
             {"at": 10, "do": "closeWindow", "number": 5},
             {"at": 20, "do": "openWindow", "number": 5, "pid": 7, "space": 2}]})";

TEST(SpaceContents, ANewWindowIsReportedOnceInItsLife) {
  ContentsProgram program(mailAndNotes);
  program.contents->start();
  program.time.advance(5s);
  EXPECT_THAT(program.newWindows, ElementsAre(5)) << "the timer saw it at 4 seconds";
  program.time.advance(10s);
  EXPECT_THAT(program.numbers(program.contents->windows().get()), ElementsAre(1, 2, 3));
  program.time.advance(10s);
  EXPECT_THAT(program.numbers(program.contents->windows(2)), ElementsAre(5, 2, 3));
  EXPECT_THAT(program.newWindows, ElementsAre(5)) << "its number has been seen before";
}

TEST(SpaceContents, AReadingForACommandReportsNothingAndIsNotUndoneByOneThatBeganBefore) {
  ContentsProgram program(mailAndNotes);
  program.contents->start();
  program.windowList.meanwhile = [&] {
    program.closeAndOpen(1, 6);
    program.contents->readNow();
  };
  program.time.advance(150ms);
  EXPECT_THAT(program.numbers(program.contents->windows(1)), ElementsAre(6));
  EXPECT_THAT(program.newWindows, IsEmpty()) << "nothing is new to the first reading";
  program.closeAndOpen(6, 7);
  program.contents->readNow();
  EXPECT_THAT(program.numbers(program.contents->windows(1)), ElementsAre(7));
  EXPECT_THAT(program.newWindows, IsEmpty());
  program.contents->refresh();
  program.time.advance(150ms);
  EXPECT_THAT(program.newWindows, ElementsAre(7));
}

TEST(SpaceContents, CallsUntilTheReadingShareIt) {
  ContentsProgram program("{}");
  for (int i = 0; i < 10; ++i) {
    program.contents->refresh();
    program.time.advance(14ms);
  }
  program.time.advance(1s);
  EXPECT_EQ(program.windowList.readings, 1);
  program.contents->refresh();
  program.time.advance(1s);
  EXPECT_EQ(program.windowList.readings, 2);
}

TEST(SpaceContents, WhateverChangesApplicationsOrSpacesLeadsToAReading) {
  ContentsProgram program(R"({"script": [
    {"at": 0.5, "do": "launchApplication", "pid": 7, "name": "Mail"},
    {"at": 1.0, "do": "activateApplication", "pid": 7},
    {"at": 1.5, "do": "switchSpace", "space": 2},
    {"at": 2.0, "do": "quitApplication", "pid": 7},
    {"at": 2.5, "do": "movePointer", "to": [1, 1]}]})");
  program.contents->start();
  const int expected[] = {1, 2, 3, 4, 5, 5, 5, 5, 6, 6, 6, 6, 6, 6, 6, 6, 7};
  program.time.advance(200ms);
  for (const int readings : expected) {
    EXPECT_EQ(program.windowList.readings, readings) << program.time.elapsed().count();
    program.time.advance(500ms);
  }
}

TEST(SpaceContents, ObserversAreToldOfRealChangesOnly) {
  ContentsProgram program(mailAndNotes);
  program.contents->start();
  program.time.advance(200ms);
  int windowsTold = 0;
  int appsTold = 0;
  const auto one = program.contents->windows().observeDidChange([&](const auto&) { ++windowsTold; });
  const auto two = program.contents->appsBySpace().observeDidChange([&](const auto&) { ++appsTold; });
  for (const auto* title : {"Inbox", "Sent"}) {
    program.state().window(1)->title = title;
    program.contents->refresh();
    program.time.advance(200ms);
  }
  EXPECT_EQ(windowsTold, 1);
  EXPECT_EQ(appsTold, 0) << "titles do not matter to it";
}

TEST(SpaceContents, AListThatCannotBeReadEmptiesEverythingUntilTheNextOne) {
  ContentsProgram program(mailAndNotes);
  program.contents->start();
  program.time.advance(500ms);
  for (const bool works : {false, true}) {
    program.windowList.works = works;
    program.contents->refresh();
    program.time.advance(200ms);
    EXPECT_EQ(program.contents->windows().get().empty(), !works);
    EXPECT_EQ(program.contents->appsBySpace().get().empty(), !works);
  }
  EXPECT_THAT(program.newWindows, IsEmpty());
}

TEST(SpaceContents, NothingHappensAfterItsEndNotEvenFromInsideItsOwnReport) {
  ContentsProgram program(mailAndNotes);
  program.contents->start();
  program.time.advance(200ms);
  program.contents->onNewWindows = [&program](const std::vector<WindowInfo>&) { program.contents.reset(); };
  program.time.advance(10s);
  EXPECT_FALSE(program.contents.has_value());
  EXPECT_EQ(program.windowList.readings, 2) << "the first one and the timer's";

  ContentsProgram early(mailAndNotes);
  early.contents->start();
  early.time.advance(100ms);
  early.contents.reset();
  early.time.advance(10s);
  EXPECT_EQ(early.windowList.readings, 0);
}

/// Applications 7 (Mail), 8 (without any name), 9 (an accessory) run; we are 500. Window 2xx is on Space 2, 1xx on 1,
/// 300 on both, 400 on none, and 404 cannot be asked for.
SpaceContentsLookups lookups() {
  return {500,
          [](ProcessID pid) -> std::optional<RunningApplication> {
            const std::map<ProcessID, RunningApplication> running = {
                {7, {7, "org.mail", "Mail"}},
                {8, {8, std::nullopt, std::nullopt}},
                {9, {9, "org.menu", "Menu", ActivationPolicy::accessory}},
                {500, {500, "tallowin", "Tallowin"}}};
            return running.contains(pid) ? std::optional(running.at(pid)) : std::nullopt;
          },
          [](WindowNumber number) -> std::optional<std::vector<ManagedSpaceID>> {
            const std::map<WindowNumber, std::optional<std::vector<ManagedSpaceID>>> special = {
                {300, {{1, 2}}}, {400, {{}}}, {404, std::nullopt}};
            return special.contains(number) ? special.at(number) : std::vector<ManagedSpaceID>{number / 100};
          }};
}

/// An ordinary window, but for these changes.
PropertyList entry(const char* changes = "{}") {
  auto result = PropertyList::parse(R"({"kCGWindowLayer": 0, "kCGWindowOwnerPID": 7, "kCGWindowNumber": 101,
    "kCGWindowBounds": {"X": 10.5, "Y": 20, "Width": 300, "Height": 200}, "kCGWindowAlpha": 1.0,
    "kCGWindowName": "Inbox", "kCGWindowOwnerName": "Owner"})");
  result.merge_patch(PropertyList::parse(changes));  // null takes a member away
  return result;
}

TEST(SpaceContentsReading, LeavesOutWhatIsNoOrdinaryWindow) {
  const char* const ordinary[] = {R"({"kCGWindowBounds": {"Width": 60, "Height": 60.0}})",
                                  R"({"kCGWindowBounds": {"X": null, "Y": "far"}})", R"({"kCGWindowAlpha": 0.011})",
                                  R"({"kCGWindowAlpha": null})", R"({"kCGWindowAlpha": "none"})"};
  const char* const others[] = {R"({"kCGWindowBounds": {"Width": 59.9}})",
                                R"({"kCGWindowBounds": {"Height": 59.9}})",
                                R"({"kCGWindowBounds": {"Height": null}})",
                                R"({"kCGWindowBounds": {"Width": "300"}})",
                                R"({"kCGWindowBounds": [10, 20, 300, 200]})",
                                R"({"kCGWindowBounds": null})",
                                R"({"kCGWindowAlpha": 0.01})",
                                R"({"kCGWindowAlpha": 0})",
                                R"({"kCGWindowLayer": 25})",
                                R"({"kCGWindowLayer": -1})",
                                R"({"kCGWindowLayer": 0.0})",
                                R"({"kCGWindowLayer": null})",
                                R"({"kCGWindowOwnerPID": null})",
                                R"({"kCGWindowOwnerPID": 4294967303})",
                                R"({"kCGWindowOwnerPID": 500})",
                                R"({"kCGWindowOwnerPID": 9})",
                                R"({"kCGWindowOwnerPID": 77})",
                                R"({"kCGWindowNumber": null})",
                                R"({"kCGWindowNumber": -101})",
                                R"({"kCGWindowNumber": 4294967397})",
                                R"({"kCGWindowNumber": "101"})",
                                R"({"kCGWindowNumber": 300})",
                                R"({"kCGWindowNumber": 400})",
                                R"({"kCGWindowNumber": 404})"};
  const auto read = [](const char* changes) {
    return readSpaceContents(readWindowList(PropertyList::array({entry(changes)})), lookups());
  };
  for (const auto* const changes : ordinary) {
    EXPECT_EQ(read(changes).windows.size(), 1U) << changes;
  }
  for (const auto* const changes : others) {
    EXPECT_EQ(read(changes), SpaceContentsReading()) << changes;
  }
}

TEST(SpaceContentsReading, NamesComeFromTheApplicationThenTheListThenNowhere) {
  const auto reading = readSpaceContents(
      readWindowList(
          PropertyList::array({entry(), entry(R"({"kCGWindowOwnerPID": 8, "kCGWindowName": null})"),
                               entry(R"({"kCGWindowOwnerPID": 8, "kCGWindowNumber": 201, "kCGWindowOwnerName": 5})")})),
      lookups());
  const CGRect frame{{10.5, 20}, {300, 200}};
  EXPECT_THAT(reading.windows, ElementsAre(WindowInfo{101, 7, "org.mail", "Mail", "Inbox", frame, 1},
                                           WindowInfo{101, 8, std::nullopt, "Owner", "", frame, 1},
                                           WindowInfo{201, 8, std::nullopt, "App", "Inbox", frame, 2}));
}

TEST(SpaceContentsReading, ApplicationsStandWhereTheirFrontmostWindowIs) {
  // front to back: Mail on 2, Mail on 1, 8 on 1, Mail on 1
  const auto reading = readSpaceContents(
      readWindowList(PropertyList::array({entry(R"({"kCGWindowNumber": 201})"), entry(R"({"kCGWindowNumber": 111})"),
                                          entry(R"({"kCGWindowNumber": 112, "kCGWindowOwnerPID": 8})"),
                                          entry(R"({"kCGWindowNumber": 110})")})),
      lookups());
  EXPECT_EQ(reading.appsBySpace,
            (AppsBySpace{{1, {{7, "org.mail", "Mail", {111, 110}}, {8, std::nullopt, "Owner", {112}}}},
                         {2, {{7, "org.mail", "Mail", {201}}}}}));
}

TEST(WindowInfo, HashesTellWindowsAndApplicationsApart) {
  const WindowInfo window{1, 2, "b", "n", "t", {{1, 2}, {3, 4}}, 5};
  EXPECT_NE(std::hash<WindowInfo>{}({1, 2, "b", "n", "t", {{1, 2}, {3, 4}}, 9}), std::hash<WindowInfo>{}(window));
  const AppOnSpace application{1, "b", "n", {3, 4}};
  EXPECT_NE(std::hash<AppOnSpace>{}(application), std::hash<AppOnSpace>{}({1, "b", "n", {4, 3}}));
}

}  // namespace
}  // namespace tallowin
