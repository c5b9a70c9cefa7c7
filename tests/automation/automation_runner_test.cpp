// What Spaces do when they are left and entered, on a simulated desktop in virtual time; and the keystrokes, browser
// tabs and note files that they have.

#include "automation/automation_runner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/storing_program.h"
#include "windows/saved_spaces.h"

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
  AutomationRunner runner{services, [this](const Space&) { return isEmpty; },
                          [](const Space&) { return std::set<ProcessID>{11}; }};
};

TEST(AutomationRunner, LaunchesWhenItsConditionsAreMet) {
  const struct {
    bool once;
    bool onlyIfEmpty;
    std::vector<std::pair<bool, bool>> entries;  ///< whether the Space is empty, and whether it launches then
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

TEST(AutomationRunner, DoesNothingForEmptyTextsNorWhileItIsOffAndFullScreenSpacesHaveNoNumber) {
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
  auto fullscreen = *program.snapshot().space("ONE");
  fullscreen.desktopNumber.reset();
  program.runner.spaceChanged({}, fullscreen);
  EXPECT_EQ(program.take("launch").at(0)["addedEnvironment"]["TALLOWIN_SPACE_NUMBER"], "");
  program.settings.defaults().setObject("runAutomations", false);
  program.change("ONE", "ONE");
  EXPECT_EQ(program.opened(), 0);
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

TEST(Keystroke, IsReadAsText) {
  using namespace CGEventFlag;
  const struct {
    const char* text;
    std::optional<Keystroke> expected;
  } cases[] = {
      {"CMD + Shift + 1", Keystroke{18, command | shift}},
      {"⌘+⇧+⌥+⌃+Up", Keystroke{126, command | shift | alternate | control}},
      {"alt+option+opt+control+ESC", Keystroke{53, alternate | control}},
      {"\u00a0command +\u3000\t= ", Keystroke{24, command}},
      {"a+cmd", Keystroke{0, command}},  // code 0 is a key
      {"a+b", Keystroke{11, 0}},
      {"no+f12", Keystroke{111, 0}},
      {"f12+no", std::nullopt},
      {"cmd+shift", std::nullopt},
      {"ctrl+f13", std::nullopt},
      {"", std::nullopt},
      {"cmd++", std::nullopt},
      {"a+", std::nullopt},
      {"\xff+a\xff", std::nullopt},
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(Keystroke::parse(text), expected) << text;
  }
}

TEST(BrowserTabs, AreThoseOfRunningBrowsersInOrder) {
  SimulatedProgram program(R"({"applications": [
      {"name": "Safari", "pid": 1, "bundleID": "com.apple.Safari"}, {"name": "Mail", "pid": 2, "bundleID": "app.mail"},
      {"name": "A \"B\\", "pid": 3, "bundleID": "com.brave.Browser"},
      {"name": "Arc", "pid": 4, "bundleID": "company.thebrowser.Browser"},
      {"name": "Vivaldi", "bundleID": "com.vivaldi.Vivaldi"}],
    "appleScripts": {"tell application \"Safari\" to get URL of every tab of front window": ["https://a", "https://b"],
      "tell application \"A \\\"B\\\\\" to get URL of every tab of front window": ["https://c"],
      "tell application \"Vivaldi\" to get URL of every tab of front window": ["https://never"]}})");
  const BrowserTabs tabs(program.desktop.workspace(), program.desktop.appleScript());
  const std::pair<const char*, std::vector<std::string>> cases[] = {
      {"com.apple.Safari", {"https://a", "https://b"}},
      {"com.brave.Browser", {"https://c"}},
      {"company.thebrowser.Browser", {}},  // does not answer
      {"com.vivaldi.Vivaldi", {}},         // does not run
      {"app.mail", {}},
  };
  for (const auto& [bundleID, urls] : cases) {
    EXPECT_EQ(tabs.urls(bundleID), urls) << bundleID;
    EXPECT_EQ(tabs.isBrowser(bundleID), bundleID != std::string("app.mail"));
  }
  EXPECT_EQ(program.take("executeAndReturnError").size(), 3U) << "only running browsers are asked";
}

TEST(NoteFiles, AreMadeOnceAndOpened) {
  StoringProgram program("{}");
  auto& files = program.desktop.files();
  auto& store = program.store;
  const NoteFiles notes(program.services);
  Space space;
  space.id = "x";
  store.setName("a/b:c", "x");
  const std::string file = "/home/user/Documents/Tallowin Notes/a-b-c.md";
  for (const auto* const note : {"buy milk", "another"}) {
    store.setNote(note, "x");
    EXPECT_TRUE(notes.open(space));
    EXPECT_EQ(files.read(file).value_or("none"), "# a/b:c\n\nbuy milk\n\n- [ ] \n") << "then it is the user's";
  }
  EXPECT_EQ(program.take("openURL").at(1)["url"], "file:///home/user/Documents/Tallowin%20Notes/a-b-c.md");
}

TEST(NoteFiles, HaveNamesThatFilesCanHave) {
  StoringProgram program("{}");
  const NoteFiles notes(program.services);
  const auto folder = "/home/user/Documents/Tallowin Notes/";
  std::string accented;
  for (int i = 0; i < 300; ++i) {
    accented += "é";
  }
  program.files().overwrite(std::string(folder) + "old\tname.md", "kept");
  const std::pair<std::string, std::string> cases[] = {
      {std::string(252, 'x'), std::string(252, 'x')},
      {std::string(253, 'x'), std::string(252, 'x')},
      {"x" + accented, "x" + accented.substr(0, 250)},  // 251 bytes, as the next letter takes two
      {"a\nb\x7f\u0085"
       "c",
       "a-b--c"},
      {"old\tname", "old\tname"}};
  Space space;
  space.id = "x";
  for (const auto& [name, file] : cases) {
    program.store.setName(name, "x");
    EXPECT_TRUE(notes.open(space));
    EXPECT_NE(program.fileText(folder + file + ".md"), "none") << file;
  }
  EXPECT_EQ(program.fileText(std::string(folder) + "old\tname.md"), "kept");
  program.files().setRoom(0);
  program.store.setName("full", "x");
  program.lines.clear();
  EXPECT_FALSE(notes.open(space));
  EXPECT_EQ(program.takeLog().size(), 1U);
}

}  // namespace
}  // namespace tallowin
