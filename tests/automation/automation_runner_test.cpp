// What Spaces do when they are left and entered, on a simulated desktop in virtual time.

#include "automation/automation_runner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/storing_program.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

struct AutomatedProgram : StoringProgram {
  AutomatedProgram()
      : StoringProgram(
            R"({"managedDisplaySpaces": [{"Display Identifier": "Main", "Current Space": {"ManagedSpaceID": 1},
            "Spaces": [{"ManagedSpaceID": 1, "uuid": "ONE"}, {"ManagedSpaceID": 2, "uuid": "TWO"}]}],
          "applications": [{"name": "Google Chrome", "bundleID": "com.google.Chrome"}],
          "programs": {"/usr/bin/shortcuts": {"output": " Zoom\r\n\nFocus Off \n\u00a0Éclair\n"}}})") {
    lines.clear();
  }

  void change(std::string_view from, std::string_view to) {
    runner.spaceChanged(*snapshot().space(from), *snapshot().space(to));
  }

  void automate(const std::string& id, const std::function<void(SpaceAutomation&)>& edit) {
    SpaceAutomation automation;
    edit(automation);
    store.setAutomation(automation, id);
  }

  /// How much was opened and launched since the last call.
  [[nodiscard]] std::ptrdiff_t opened() {
    time.advance(1s);
    return std::ranges::count_if(std::exchange(lines, {}), [](const std::string& line) {
      return line.find("\"open") != std::string::npos || line.find("\"op\":\"launch\"") != std::string::npos;
    });
  }

  bool isEmpty = true;
  AutomationRunner runner{{store, desktop.workspace(), desktop.processes(), desktop.events(), desktop.system(), time,
                           desktop.folders(), settings, desktop.log()},
                          [this](const Space&) { return isEmpty; },
                          [](const Space&) { return std::set<ProcessID>{11}; }};
};

TEST(AutomationRunner, LaunchesWhenItsConditionsAreMet) {
  struct Entry {
    bool empty;
    bool launches;
  };
  const struct {
    bool once;
    bool onlyIfEmpty;
    std::vector<Entry> entries;
  } cases[] = {
      {false, false, {{false, true}, {false, true}}},
      {true, false, {{false, true}, {true, false}}},
      {false, true, {{false, false}, {true, true}, {true, true}}},
      {true, true, {{false, false}, {true, true}, {true, false}}},
  };
  for (const auto& [once, onlyIfEmpty, entries] : cases) {
    AutomatedProgram program;
    program.automate("TWO", [&](SpaceAutomation& automation) {
      automation.openURLs = {"a://b"};
      automation.launchOnce = once;
      automation.launchOnlyIfEmpty = onlyIfEmpty;
      automation.browserApp = "com.google.Chrome";
      automation.browserProfile = "Default";
    });
    for (const auto& [empty, launches] : entries) {
      program.isEmpty = empty;
      program.change("ONE", "TWO");
      EXPECT_EQ(program.opened(), launches ? 2 : 1) << once << onlyIfEmpty << ": the profile opens regardless";
    }
  }
  AutomatedProgram program;
  SpaceAutomation automation;
  automation.openURLs = {"a://b"};
  automation.launchOnce = automation.launchOnlyIfEmpty = true;
  program.isEmpty = false;
  program.runner.launch(automation);
  EXPECT_EQ(program.opened(), 1);
}

TEST(AutomationRunner, DoesNothingForEmptyTextsNorWhileItIsOff) {
  AutomatedProgram program;
  program.automate("TWO", [](SpaceAutomation& automation) {
    automation.shortcutOnEnter = automation.scriptOnEnter = automation.keystrokeOnEnter = "";
    automation.openURLs = {"no url://"};
    automation.shortcutOnLeave = automation.scriptOnLeave = automation.browserProfile = "";
    automation.browserApp = "com.google.Chrome";
  });
  program.change("TWO", "TWO");
  EXPECT_EQ(program.opened(), 0);
  program.automate("ONE",
                   [](SpaceAutomation& automation) { automation.scriptOnLeave = automation.scriptOnEnter = "x"; });
  program.settings.defaults().setObject("runAutomations", false);
  program.change("ONE", "ONE");
  EXPECT_EQ(program.opened(), 0);
}

TEST(AutomationRunner, FullScreenSpacesHaveNoNumber) {
  AutomatedProgram program;
  program.automate("TWO", [](SpaceAutomation& automation) { automation.scriptOnEnter = "x"; });
  auto fullscreen = *program.snapshot().space("TWO");
  fullscreen.desktopNumber.reset();
  program.runner.spaceChanged({}, fullscreen);
  EXPECT_EQ(program.take("launch").at(0)["addedEnvironment"]["TALLOWIN_SPACE_NUMBER"], "");
}

TEST(AutomationRunner, ListsShortcutsAndLogsWhatCannotBeStarted) {
  AutomatedProgram program;
  EXPECT_THAT(program.runner.availableShortcuts(), ElementsAre("Focus Off", "Zoom", "Éclair"));
  program.state().programs = {{"/usr/bin/shortcuts", {"", true}}, {"/bin/zsh", {"", true}}};
  EXPECT_THAT(program.runner.availableShortcuts(), IsEmpty());
  program.automate("TWO", [](SpaceAutomation& automation) {
    automation.shortcutOnEnter = "x";
    automation.scriptOnEnter = "y";
  });
  program.change("ONE", "TWO");
  EXPECT_THAT(program.takeLog(), ElementsAre("run /usr/bin/shortcuts: there is no such program",
                                             "run /bin/zsh: there is no such program"));
}

}  // namespace
}  // namespace tallowin
