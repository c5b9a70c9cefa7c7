// Focus memory, Space lock and application rules, on a simulated desktop.

#include "windows/conveniences.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/windows/windows_program.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// display 1: [1] 2      display 2: [3]
constexpr auto twoDisplays = R"({"menuBarDisplay": "11111111-1111-4111-8111-111111111111", "displays": [
    {"id": 1, "uuid": "11111111-1111-4111-8111-111111111111", "bounds": [0, 0, 800, 600]},
    {"id": 2, "uuid": "22222222-2222-4222-8222-222222222222", "bounds": [800, 0, 800, 600]}],
  "managedDisplaySpaces": [
    {"Display Identifier": "11111111-1111-4111-8111-111111111111", "Current Space": {"ManagedSpaceID": 1},
     "Spaces": [{"ManagedSpaceID": 1}, {"ManagedSpaceID": 2}]},
    {"Display Identifier": "22222222-2222-4222-8222-222222222222", "Current Space": {"ManagedSpaceID": 3},
     "Spaces": [{"ManagedSpaceID": 3}]}],
  "applications": [
    {"name": "Mail", "pid": 11, "bundleID": "app.mail", "active": true},
    {"name": "Notes", "pid": 12, "bundleID": "app.notes"},
    {"name": "Pad", "pid": 13, "bundleID": "app.pad"}, {"name": "Idle", "bundleID": "app.idle"}],
  "windows": [
    {"number": 111, "pid": 11, "space": 1}, {"number": 112, "pid": 11, "space": 1},
    {"number": 121, "pid": 12, "space": 1}, {"number": 122, "pid": 12, "space": 2},
    {"number": 131, "pid": 13, "space": 3}],
  "preferences": {"spaceLock": true}})";

/// A program with the conveniences, whose user sits at two displays.
struct ConvenientProgram : WindowsProgram {
  ConvenientProgram() : WindowsProgram(twoDisplays) { lock.start(); }

  void userSwitchesTo(ManagedSpaceID space) { desktop.parts().spaces.switchNow(space); }
  void userActivates(ProcessID pid) { desktop.parts().workspace.activate(pid); }

  FocusMemory focus{services, contents, *mover};
  SpaceLock lock{services, contents, *mover, [this](const Space& space) { this->userSwitchesTo(space.managedID); }};
  AppRules rules{services, *mover};
};

TEST(FocusMemory, GivesTheFocusBackOnReturn) {
  struct Case {
    const char* what;
    std::function<void(ConvenientProgram&)> meanwhile;
    bool raised;
  };
  const Case cases[] = {
      {"returns", [](auto&) {}, true},
      {"switched off", [](auto& program) { program.preferences.setObject("restoreFocus", false); }, false},
      {"the window has closed", [](auto& program) { program.closeWindow(112); }, false},
      {"the window is on another Space now", [](auto& program) { program.state().window(112)->spaces = {2}; }, false},
  };
  for (const auto& [what, meanwhile, raised] : cases) {
    ConvenientProgram program;
    program.mover->raise({112, 11, {}});
    program.focus.leaving(program.spaceNumbered(1));
    program.userSwitchesTo(2);
    program.state().windows.at(0).spaces = {2};  // the front window comes along, so that Mail has the focus elsewhere
    program.state().window(112)->spaces = {1};
    program.userActivates(12);
    meanwhile(program);
    program.readWindows();
    program.userSwitchesTo(1);
    program.state().applications.at(0).isActive = program.state().applications.at(1).isActive = false;
    program.focus.entered(program.spaceNumbered(1));
    program.lines.clear();
    program.time.advance(199ms);
    EXPECT_THAT(program.take("AXUIElementPerformAction"), IsEmpty()) << what;
    program.time.advance(1ms);
    EXPECT_THAT(program.take("AXUIElementPerformAction"), SizeIs(raised ? 1 : 0)) << what;
  }
}

TEST(FocusMemory, LeavesAFocusOfTheUsersAloneAndWaitsForTheLastChangeOnly) {
  ConvenientProgram program;
  program.focus.leaving(program.spaceNumbered(1));
  EXPECT_EQ(program.focus.lastWindow("managed-1"), (WindowRef{111, 11}));
  program.userActivates(12);
  program.focus.entered(program.spaceNumbered(1));
  program.time.advance(1s);
  EXPECT_TRUE(program.state().application(12)->isActive) << "the user is in another window of the Space already";

  program.state().applications.at(1).isActive = false;
  program.focus.entered(program.spaceNumbered(1));
  program.userSwitchesTo(2);
  program.lines.clear();
  program.time.advance(1s);
  EXPECT_THAT(program.take("activateWithOptions"), IsEmpty()) << "a Space that was only passed is not brought back";

  program.focus.entered(program.spaceNumbered(1));
  program.time.advance(100ms);
  program.focus.entered(program.spaceNumbered(2));
  program.lines.clear();
  program.time.advance(1s);
  EXPECT_THAT(program.take("activateWithOptions"), IsEmpty()) << "nothing is remembered of Space 2";

  program.state().applications.at(0).pid = program.state().ownProcess;
  program.state().applications.at(0).isActive = true;
  program.focus.leaving(program.spaceNumbered(2));
  EXPECT_EQ(program.focus.lastWindow("managed-2"), std::nullopt) << "this program's own windows do not count";
}

TEST(SpaceLock, OnlyAnApplicationActivatedJustBeforePulls) {
  struct Case {
    const char* what;
    Duration after;
    ManagedSpaceID from, to;
    bool ours;
    ProcessID activated;
    bool pulled;
  };
  const Case cases[] = {
      {"pulled", 699ms, 1, 2, false, 12, true},
      {"too long ago", 700ms, 1, 2, false, 12, false},
      {"our own doing", 0ms, 1, 2, true, 12, false},
      {"another display", 0ms, 1, 3, false, 13, false},
      {"we were activated", 0ms, 1, 2, false, 500, false},
  };
  for (const auto& [what, after, from, to, ours, activated, pulled] : cases) {
    ConvenientProgram program;
    EXPECT_FALSE(program.lock.spaceChanged(program.spaceNumbered(from), program.spaceNumbered(to), ours)) << what;
    program.desktop.parts().workspaceNotifications.post(
        {NotificationName::NSWorkspaceDidActivateApplicationNotification, activated});
    program.time.advance(after);
    program.desktop.parts().clock.jumpWallClock(-1h);
    EXPECT_EQ(program.lock.spaceChanged(program.spaceNumbered(from), program.spaceNumbered(to), ours), pulled) << what;
    EXPECT_FALSE(program.lock.spaceChanged(std::nullopt, program.spaceNumbered(to), ours)) << what;
    program.preferences.setObject("spaceLock", false);
    EXPECT_FALSE(program.lock.spaceChanged(program.spaceNumbered(from), program.spaceNumbered(to), ours)) << what;
  }
}

TEST(SpaceLock, OpensAnApplicationWithoutWindowsEachTime) {
  ConvenientProgram program;
  SimulatedApplication tray;
  tray.pid = 14;
  tray.bundleIdentifier = "app.tray";
  tray.name = "Tray";
  program.state().applications.push_back(tray);
  const auto from = program.spaceNumbered(1);
  for (int round = 0; round < 2; ++round) {  // it pulls again whenever it is opened
    program.userActivates(14);
    program.userSwitchesTo(2);
    EXPECT_TRUE(program.lock.spaceChanged(from, program.spaceNumbered(2), false));
    EXPECT_EQ(program.snapshot().activeSpace()->managedID, 1);
    program.time.advance(300ms);
  }
  EXPECT_THAT(program.take("openApplicationAtURL"), SizeIs(2));
  program.desktop.parts().workspaceNotifications.post(
      {NotificationName::NSWorkspaceDidActivateApplicationNotification, 99});
  EXPECT_TRUE(program.lock.spaceChanged(from, program.spaceNumbered(2), false));
  EXPECT_THAT(program.takeToasts(), ElementsAre("Brought the app here (lock)")) << "it has ended meanwhile";
}

/// Pins an application to a Space.
void pin(ConvenientProgram& program, ManagedSpaceID space, const std::string& bundleID) {
  SpaceAutomation automation;
  automation.pinnedApps = {bundleID};
  program.store.setAutomation(automation, program.spaceNumbered(space).id);
}

TEST(AppRules, NewWindowsGoToTheirSpaceOnce) {
  ConvenientProgram program;
  pin(program, 1, "app.notes");
  pin(program, 2, "app.notes");  // the later one has it
  const auto windows = program.contents.windows().get();
  program.preferences.setObject("applyAppRules", false);
  program.rules.apply(windows, program.snapshot());
  program.preferences.setObject("applyAppRules", true);
  program.rules.apply(windows, program.snapshot());
  program.time.advance(1s);
  EXPECT_THAT(program.spacesOf(121), ElementsAre(2));
  EXPECT_THAT(program.spacesOf(111), ElementsAre(1)) << "there is no rule for Mail";

  // 122 stood there already and counts as placed too.
  program.state().window(121)->spaces = program.state().window(122)->spaces = {1};
  program.readWindows();
  program.rules.apply(program.contents.windows().get(), program.snapshot());
  program.time.advance(1s);
  EXPECT_THAT(program.spacesOf(121), ElementsAre(1));
  EXPECT_THAT(program.spacesOf(122), ElementsAre(1));
}

}  // namespace
}  // namespace tallowin
