// What happens when displays come and go, and after a restart of the computer.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/windows/windows_program.h"
#include "windows/automatic_restore.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

// built-in: [1] 2      external: [3] 4
const std::string docked = R"({"menuBarDisplay": "11111111-1111-4111-8111-111111111111", "displays": [
    {"id": 1, "uuid": "11111111-1111-4111-8111-111111111111", "bounds": [0, 0, 800, 600], "builtin": true},
    {"id": 2, "uuid": "22222222-2222-4222-8222-222222222222", "bounds": [800, 0, 800, 600]}],
  "managedDisplaySpaces": [
    {"Display Identifier": "11111111-1111-4111-8111-111111111111", "Current Space": {"ManagedSpaceID": 1},
     "Spaces": [{"ManagedSpaceID": 1, "uuid": "one"}, {"ManagedSpaceID": 2, "uuid": "two"}]},
    {"Display Identifier": "22222222-2222-4222-8222-222222222222", "Current Space": {"ManagedSpaceID": 3},
     "Spaces": [{"ManagedSpaceID": 3, "uuid": "three"}, {"ManagedSpaceID": 4, "uuid": "four"}]}],
  "applications": [{"name": "A", "pid": 11, "bundleID": "app.a"}],
  "windows": [{"number": 41, "pid": 11, "title": "far", "space": 4}, {"number": 11, "pid": 11, "space": 1}],
  "uptime": )";

/// A program whose user plugs an external display in and out.
struct DockingProgram : WindowsProgram {
  explicit DockingProgram(double uptime = 3600) : WindowsProgram(docked + std::to_string(uptime) + "}") {
    reconnect.start();
    reconnect.look();
    watcher.onSnapshot = [this](const SpaceSnapshot&) { reconnect.look(); };
  }

  void unplug() { desktop.parts().disconnectDisplay(external.id); }
  void plugIn() { desktop.parts().connectDisplay(external); }

  /// The layout is saved; then the display goes, and the window that was on it ends up on Space 2.
  void undock() {
    layouts->save("auto", snapshot());
    unplug();
    state().window(41)->spaces = {2};
    time.advance(60s);
    lines.clear();
  }

  void ruinLayouts(void (SimulatedFiles::*ruin)(const std::filesystem::path&)) {
    for (const auto& name : desktop.files().list(layoutFolder)) {
      (files().*ruin)(layoutFolder + name);
    }
  }

  const SimulatedDisplay external = state().displays.at(1);
  ReconnectRestore reconnect{services, contents, *layouts};
};

TEST(ReconnectRestore, SixtyChangesInTwoSecondsAreOne) {
  DockingProgram program;
  program.undock();
  for (int i = 0; i < 60; ++i) {
    (i % 2 == 0) ? program.plugIn() : program.unplug();
    program.time.advance(33ms);
  }
  program.plugIn();
  program.time.advance(3s - 1ms);
  EXPECT_THAT(program.spacesOf(41), testing::Not(ElementsAre(4)));
  program.time.advance(1s);
  EXPECT_THAT(program.spacesOf(41), ElementsAre(4));
  EXPECT_THAT(program.takeToasts(), ElementsAre("Restored 1 windows to your external display (display.2)"));

  program.state().window(41)->spaces = {1};
  program.reconnect.look();  // systems report the same set again long after
  program.time.advance(10s);
  EXPECT_THAT(program.spacesOf(41), ElementsAre(1)) << "the user has moved it meanwhile";
}

TEST(ReconnectRestore, HappensOnlyWhenWantedAndPossible) {
  const std::pair<const char*, std::function<void(DockingProgram&)>> cases[] = {
      {"switched off", [](auto& program) { program.preferences.setObject("restoreOnDisplayReconnect", false); }},
      {"no layout", [](auto& program) { program.ruinLayouts(&SimulatedFiles::take); }},
      {"a broken layout", [](auto& program) { program.ruinLayouts(&SimulatedFiles::corrupt); }},
      {"the windows are where they should be", [](auto& program) { program.state().window(41)->spaces = {4}; }},
  };
  for (const auto& [what, prepare] : cases) {
    DockingProgram program;
    program.undock();
    prepare(program);
    const auto before = program.spacesOf(41);
    program.plugIn();
    program.time.advance(10s);
    EXPECT_EQ(program.spacesOf(41), before) << what;
    EXPECT_THAT(program.takeToasts(), IsEmpty()) << what;
  }
}

TEST(ReconnectRestore, NothingIsSavedByItselfUntilTheWindowsAreBack) {
  DockingProgram program;
  program.undock();
  program.plugIn();
  program.layouts->startAutoSave();
  for (int i = 0; i < 299; ++i) {  // the display flickers for five minutes
    program.time.advance(950ms);
    program.unplug();
    program.time.advance(50ms);  // long enough to be seen
    program.plugIn();
  }
  program.time.advance(3s - 1ms);  // over the first save, due at five minutes
  const auto setup = program.layouts->displaySetup(program.snapshot());
  const auto before = program.layouts->load("auto-setup", setup)->savedAt;
  EXPECT_EQ(program.layouts->load("auto-setup", setup)->entries.at(0).spaceUUID, "four");
  program.time.advance(1s);
  EXPECT_THAT(program.spacesOf(41), ElementsAre(4));
  const auto afterwards = program.layouts->load("auto-setup", setup);
  EXPECT_EQ(afterwards->entries.at(0).spaceUUID, "four");
  EXPECT_GT(afterwards->savedAt, before) << "the save that was due is made up for";
  program.state().window(41)->spaces = {1};
  program.time.advance(300s);
  EXPECT_EQ(program.layouts->load("auto-setup", setup)->entries.at(0).spaceUUID, "one") << "not held for good";
}

TEST(ReconnectRestore, SleepingDisplaysAreNoChange) {
  DockingProgram program;
  program.layouts->save("auto", program.snapshot());
  program.state().window(41)->spaces = {2};
  const auto displays = std::exchange(program.state().displays, {});
  const auto list = std::exchange(program.state().spaces, RawSpaces(PropertyList::array()));
  program.reconnect.look();
  program.time.advance(1h);
  program.state().displays = displays;
  program.state().spaces = list;
  program.reconnect.look();
  program.time.advance(1h);
  EXPECT_THAT(program.spacesOf(41), ElementsAre(2));
}

/// A program that was started so many seconds after its machine.
struct RestartedProgram : DockingProgram {
  explicit RestartedProgram(double uptime) : DockingProgram(uptime) {
    layouts->save("auto", snapshot());
    state().window(41)->spaces = {1};
    readWindows();
    lines.clear();
    offer.start();
  }

  RestartOffer offer{services, *layouts};
};

TEST(RestartOffer, IsMadeOnMachinesJustRestartedAndTakenByNothingButItsButton) {
  struct Case {
    double uptime;  ///< 0.4 seconds before the offer looks at it
    std::size_t alerts;
    std::optional<std::string> button;
    ManagedSpaceID space;
    bool layouts = true;
  };
  for (const auto& [uptime, alerts, button, space, layouts] : {Case{899, 1, "Restore", 4},
                                                               {60, 1, "Not Now", 1},
                                                               {60, 1, {}, 1},
                                                               {899.6, 0, "Restore", 1},
                                                               {60, 0, {}, 1, false}}) {
    RestartedProgram program(uptime);
    if (!layouts) {
      program.ruinLayouts(&SimulatedFiles::take);
    }
    program.time.advance(45s);
    EXPECT_EQ(program.take("alert").size(), alerts) << uptime;
    program.desktop.parts().alerts.press(button);
    program.time.advance(1s);
    EXPECT_THAT(program.spacesOf(41), ElementsAre(space)) << uptime;
  }
}

}  // namespace
}  // namespace tallowin
