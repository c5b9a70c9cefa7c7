// The contents of Spaces on a simulated desktop: when they are read, and who is told of what.

#include "windows/space_contents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/simulated_program.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// Counts how often a window list is read, and can keep it from being read.
class CountedWindowList : public WindowList {
 public:
  explicit CountedWindowList(WindowList& list) : list_(list) {}

  std::optional<PropertyList> CGWindowListCopyWindowInfo(std::uint32_t options, WindowNumber relativeTo) override {
    ++readings;
    return works ? list_.CGWindowListCopyWindowInfo(options, relativeTo) : std::nullopt;
  }

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

  [[nodiscard]] std::vector<WindowNumber> numbers(const std::vector<WindowInfo>& windows) const {
    std::vector<WindowNumber> result;
    std::ranges::transform(windows, std::back_inserter(result), &WindowInfo::id);
    return result;
  }

  CountedWindowList windowList{desktop.windowList()};
  std::vector<WindowNumber> newWindows;
  std::optional<SpaceContents> contents{
      std::in_place, SpaceContents::Services{windowList, desktop.workspace(), bridge, desktop.workspaceNotifications(),
                                             desktop.system(), time, time}};
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

}  // namespace
}  // namespace tallowin
