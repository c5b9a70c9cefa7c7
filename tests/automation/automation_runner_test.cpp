// What Spaces do when they are left and entered, on a simulated desktop in virtual time.

#include "automation/automation_runner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/simulated/simulated_parts.h"
#include "tests/simulated_program.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

// [1] 2      Mail has a window on 1; Pad has no bundle identifier; Menu has no Dock icon.
constexpr auto machine = R"({"processID": 500,
  "managedDisplaySpaces": [{"Display Identifier": "Main", "Current Space": {"ManagedSpaceID": 1},
    "Spaces": [{"ManagedSpaceID": 1, "uuid": "ONE"}, {"ManagedSpaceID": 2, "uuid": "TWO"}]}],
  "applications": [
    {"name": "Finder", "pid": 350, "bundleID": "com.apple.finder"},
    {"name": "Mail", "pid": 11, "bundleID": "app.mail", "active": true}, {"name": "Pad", "pid": 12},
    {"name": "Menu", "pid": 13, "bundleID": "app.menu", "activationPolicy": "accessory"},
    {"name": "Tallowin", "pid": 500, "bundleID": "com.quorvex.tallowin"},
    {"name": "Google Chrome", "bundleID": "com.google.Chrome"}],
  "programs": {"/usr/bin/shortcuts": {"output": " Zoom\r\n\nFocus Off \n\u00a0Éclair\n"}}})";

struct AutomatedProgram : SimulatedProgram {
  AutomatedProgram() : SimulatedProgram(machine) { lines.clear(); }

  [[nodiscard]] Space space(std::string_view id) const { return *snapshot().space(id); }

  void change(std::optional<std::string_view> from, std::string_view to) {
    runner.spaceChanged(from ? std::optional(space(*from)) : std::nullopt, space(to));
  }

  void automate(const std::string& id, const std::function<void(SpaceAutomation&)>& edit) {
    SpaceAutomation automation;
    edit(automation);
    store.setAutomation(automation, id);
  }

  /// What was done since the last call, each with its time in milliseconds since the start of this program.
  [[nodiscard]] std::vector<std::string> done(Duration during = 1s) {
    time.advance(during);
    std::vector<std::string> told;
    for (const auto& line : std::exchange(lines, {})) {
      const auto record = nlohmann::json::parse(line);
      if (const auto text = sentence(record); !text.empty()) {
        told.push_back(std::to_string(std::lround(record["t"].get<double>() * 1000)) + " " + text);
      }
    }
    return told;
  }

  bool isEmpty = true;
  AppPaths paths{desktop.files(), desktop.folders()};
  SpaceStore store{{desktop.files(), images, desktop.workspace(), time, time, time, desktop.log(), settings, paths},
                   paths.supportDirectory() / "spaces.json"};
  AutomationRunner runner{{store, desktop.workspace(), desktop.processes(), desktop.events(), desktop.system(), time,
                           desktop.folders(), settings, desktop.log()},
                          [this](const Space&) { return isEmpty; },
                          [](const Space&) { return std::set<ProcessID>{11}; }};

 private:
  static std::string sentence(const nlohmann::json& record) {
    const auto op = record["op"].get<std::string>();
    if (op == "launch") {
      return record["arguments"].dump() + (record["addedEnvironment"].empty() ? "" : " with variables");
    }
    if (op == "openApplicationAtURL") {
      return record["application"].get<std::string>() + (record["activates"] == true ? " " : " behind ") +
             record["arguments"].dump();
    }
    if (op == "CGEventPost") {
      return (record["down"] == true ? "press " : "release ") + record["keyCode"].dump();
    }
    const auto value = op == "openURL" ? record["url"]
                       : op == "hide"  ? record["pid"]
                       : op == "log"   ? record["message"]
                                       : nullptr;
    return value.is_null() ? "" : op + " " + (value.is_string() ? value.get<std::string>() : value.dump());
  }
};

TEST(AutomationRunner, ActsInOrderAndToTheStatedDelays) {
  AutomatedProgram program;
  program.automate("ONE", [](SpaceAutomation& automation) {
    automation.shortcutOnLeave = "Bye";
    automation.scriptOnLeave = "leave";
    automation.scriptOnEnter = "later";
  });
  program.automate("TWO", [](SpaceAutomation& automation) {
    automation.launchApps = {"/Applications/Gone.app", "/Applications/Mail.app"};
    automation.openURLs = {"~/Documents/plan.pdf", "raycast://x", "no url://", "/a b/ü"};
    automation.browserApp = "com.google.Chrome";
    automation.browserProfile = "Profile 1";
    automation.keystrokeOnEnter = "cmd+1";
    automation.hideOtherApps = true;
    automation.shortcutOnEnter = "Hello";
    automation.scriptOnEnter = "enter";
    automation.shortcutOnLeave = "Later";
  });
  program.change("ONE", "TWO");
  EXPECT_THAT(program.done(), ElementsAre("0 [\"run\",\"Bye\"]", "0 [\"-lc\",\"leave\"] with variables",
                                          "0 [\"run\",\"Hello\"]", "0 [\"-lc\",\"enter\"] with variables",
                                          "300 /Applications/Google Chrome.app [\"--profile-directory=Profile 1\"]",
                                          "350 /Applications/Gone.app []", "350 /Applications/Mail.app []",
                                          "350 openURL file:///home/user/Documents/plan.pdf", "350 openURL raycast://x",
                                          "350 openURL file:///a%20b/%C3%BC",
                                          "350 log launch /Applications/Gone.app: The application cannot be found.",
                                          "400 hide 12", "400 hide 1000", "450 press 18", "450 release 18"));

  program.change("TWO", "ONE");
  program.change("ONE", "TWO");
  EXPECT_THAT(program.done(200ms), testing::SizeIs(6)) << "programs of both changes; nothing that is delayed";
  program.change("TWO", "ONE");
  EXPECT_THAT(program.done(), testing::Contains("1450 release 18")) << "leaving does not cancel what entering began";
}

TEST(AutomationRunner, ScriptsLearnTheirSpace) {
  AutomatedProgram program;
  program.automate("TWO",
                   [](SpaceAutomation& automation) { automation.scriptOnEnter = "echo \"$TALLOWIN_SPACE_NAME\""; });
  program.store.setName("Ma = il", "TWO");
  program.change({}, "TWO");
  auto fullscreen = program.space("TWO");
  fullscreen.desktopNumber.reset();
  program.runner.spaceChanged({}, fullscreen);
  const auto launched = program.take("launch");
  EXPECT_EQ(launched.at(0), nlohmann::ordered_json::parse(R"({"executable": "/bin/zsh",
    "arguments": ["-lc", "echo \"$TALLOWIN_SPACE_NAME\""], "addedEnvironment":
      {"TALLOWIN_SPACE_ID": "TWO", "TALLOWIN_SPACE_NAME": "Ma = il", "TALLOWIN_SPACE_NUMBER": "2"}})"));
  EXPECT_EQ(launched.at(1)["addedEnvironment"]["TALLOWIN_SPACE_NUMBER"], "");
}

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
      EXPECT_EQ(program.done().size(), launches ? 2U : 1U) << once << onlyIfEmpty << ": the profile opens regardless";
    }
  }
  AutomatedProgram program;
  SpaceAutomation automation;
  automation.openURLs = {"a://b"};
  automation.launchOnce = automation.launchOnlyIfEmpty = true;
  program.isEmpty = false;
  program.runner.launch(automation);
  EXPECT_THAT(program.done(), ElementsAre("0 openURL a://b"));
}

TEST(AutomationRunner, DoesNothingForEmptyTextsNorWhileItIsOff) {
  AutomatedProgram program;
  program.automate("TWO", [](SpaceAutomation& automation) {
    automation.shortcutOnEnter = automation.scriptOnEnter = automation.keystrokeOnEnter = "";
    automation.shortcutOnLeave = automation.scriptOnLeave = automation.browserProfile = "";
    automation.browserApp = "com.google.Chrome";
  });
  program.change("TWO", "TWO");
  EXPECT_THAT(program.done(), IsEmpty());
  program.automate("ONE",
                   [](SpaceAutomation& automation) { automation.scriptOnLeave = automation.scriptOnEnter = "x"; });
  program.settings.defaults().setObject("runAutomations", false);
  program.change("ONE", "ONE");
  EXPECT_THAT(program.done(), IsEmpty());
}

TEST(AutomationRunner, ListsShortcutsAndLogsWhatCannotBeStarted) {
  AutomatedProgram program;
  EXPECT_THAT(program.runner.availableShortcuts(), ElementsAre("Focus Off", "Zoom", "Éclair"));
  program.desktop.parts().state.programs = {{"/usr/bin/shortcuts", {"", true}}, {"/bin/zsh", {"", true}}};
  EXPECT_THAT(program.runner.availableShortcuts(), IsEmpty());
  program.automate("TWO", [](SpaceAutomation& automation) {
    automation.shortcutOnEnter = "x";
    automation.scriptOnEnter = "y";
  });
  program.change({}, "TWO");
  EXPECT_THAT(program.takeLog(), ElementsAre("run /usr/bin/shortcuts: there is no such program",
                                             "run /bin/zsh: there is no such program"));
}

}  // namespace
}  // namespace tallowin
