// The watcher on a simulated desktop: what leads to a refresh, when, and who is told.

#include "core/space_watcher.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/simulated_program.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

/// A program with a watcher, which notes what it is told.
struct WatchedProgram : SimulatedProgram {
  explicit WatchedProgram(std::string_view scenarioJSON) : SimulatedProgram(scenarioJSON) {
    watcher.onSnapshot = [this](const SpaceSnapshot& snapshot) {
      told.push_back("snapshot of " + std::to_string(snapshot.allSpaces().size()));
    };
    watcher.onActiveSpaceChange = [this](const std::optional<Space>& from, const Space& to) {
      told.push_back((from ? std::to_string(from->managedID) : "nothing") + " to " + std::to_string(to.managedID));
    };
  }

  std::vector<std::string> takeTold() { return std::exchange(told, {}); }

  std::vector<std::string> told;
  SpaceWatcher watcher{{provider, bridge, desktop.workspaceNotifications(), desktop.defaultNotifications(),
                        desktop.files(), desktop.folders(), time, desktop.log()}};
};

TEST(SpaceWatcher, OnlyTheMenuBarDisplayHasAnActiveSpaceToTellOf) {
  WatchedProgram program(R"({"menuBarDisplay": "A",
    "displays": [{"id": 1, "uuid": "11111111-1111-4111-8111-111111111111", "name": "A", "bounds": [0, 0, 100, 100]}],
    "managedDisplaySpaces": [
      {"Display Identifier": "A", "Current Space": {"ManagedSpaceID": 1}, "Spaces": [{"ManagedSpaceID": 1}]},
      {"Display Identifier": "B", "Current Space": {"ManagedSpaceID": 2},
       "Spaces": [{"ManagedSpaceID": 2}, {"ManagedSpaceID": 3}]}],
    "script": [{"at": 1, "do": "switchSpace", "space": 3}]})");
  program.watcher.start();
  EXPECT_THAT(program.takeTold(), ElementsAre("snapshot of 3", "nothing to 1"));
  program.watcher.start();
  program.time.advance(2s);
  EXPECT_THAT(program.takeTold(), ElementsAre("snapshot of 3"));
  EXPECT_EQ(program.watcher.snapshot().get().displays[1].activeSpaceID, "managed-3");
}

TEST(SpaceWatcher, ObserversAreToldBeforeTheChange) {
  WatchedProgram program("{}");
  std::vector<std::size_t> seen;
  const auto observer = program.watcher.snapshot().observeWillChange([&](const SpaceSnapshot& next) {
    seen = {program.watcher.snapshot().get().displays.size(), next.displays.size()};
  });
  program.watcher.start();
  EXPECT_THAT(seen, ElementsAre(0U, 1U));
}

TEST(SpaceWatcher, TheSpacesFileIsWaitedForAndWatchedThroughItsReplacements) {
  WatchedProgram program(R"({"files": {"~/Library/Preferences/com.apple.spaces.plist": {"missing": true}},
                             "notificationFailures": [1329]})");
  auto& desktop = program.desktop.parts();
  const auto saveWith = [&desktop](int spaces) {
    auto list = PropertyList::parse(R"([{"Display Identifier": "Main", "Spaces": []}])");
    for (int i = 1; i <= spaces; ++i) {
      list[0]["Spaces"].push_back({{"ManagedSpaceID", i}});
    }
    desktop.state.spaces = RawSpaces(list);
    desktop.files.replace(SimulatedParts::spacesFile(), "saved");
  };
  program.watcher.start();
  EXPECT_THAT(program.takeLog(), ElementsAre("WindowServer notifications unavailable, relying on fallbacks"));
  static_cast<void>(program.takeTold());

  program.time.advance(5s);
  saveWith(1);
  program.time.advance(1s);  // the third attempt to watch the file finds it
  EXPECT_THAT(program.takeTold(), ElementsAre());
  saveWith(2);
  program.time.advance(39ms);
  EXPECT_THAT(program.takeTold(), ElementsAre());
  program.time.advance(1ms);
  EXPECT_THAT(program.takeTold(), ElementsAre("snapshot of 2"));
  program.time.advance(160ms);  // the new file is watched 200 ms after it took the old one's place
  saveWith(3);
  program.time.advance(40ms);
  EXPECT_THAT(program.takeTold(), ElementsAre("snapshot of 3"));
}

TEST(SpaceWatcher, AListThatCannotBeHadKeepsTheOldSnapshot) {
  WatchedProgram program(R"({"script": [{"at": 1, "do": "setManagedDisplaySpaces", "list": null},
                                        {"at": 2, "do": "setManagedDisplaySpaces", "list": []}]})");
  program.watcher.start();
  static_cast<void>(program.takeTold());
  program.time.advance(3s);
  EXPECT_THAT(program.takeTold(), ElementsAre());
  EXPECT_EQ(program.watcher.snapshot().get().allSpaces().size(), 4U);
  EXPECT_THAT(program.takeLog(), ElementsAre("CGSCopyManagedDisplaySpaces returned nothing"));
}

TEST(SpaceWatcher, MayGoWhileAnEventIsOnItsWay) {
  SimulatedProgram program(R"({"script": [{"at": 1, "do": "switchSpace", "space": 2}]})");
  auto watcher = std::make_unique<SpaceWatcher>(
      SpaceWatcher::Services{program.provider, program.bridge, program.desktop.workspaceNotifications(),
                             program.desktop.defaultNotifications(), program.desktop.files(), program.desktop.folders(),
                             program.time, program.desktop.log()});
  watcher->start();
  const auto gone = program.time.after(1s, [&watcher] { watcher.reset(); });
  program.time.advance(5s);
  EXPECT_EQ(watcher, nullptr);
}

}  // namespace
}  // namespace tallowin
