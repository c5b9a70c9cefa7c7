// The shortcuts that the settings ask for, and the keys that are taken for them on a simulated desktop.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/storing_program.h"
#include "triggers/shortcut_manager.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto ctrlAlt = CGEventFlag::control | CGEventFlag::alternate;

struct ShortcutsProgram : StoringProgram {
  explicit ShortcutsProgram(std::string_view scenarioJSON = "{}") : StoringProgram(scenarioJSON) {
    manager.onPressed = [this](const std::string& action) { actions.push_back(action); };
    preferencesChanges = preferences.observe([this] { manager.refresh(); });
  }

  void set(std::string_view key, const PropertyList& value) {
    preferences.setObject(key, value);
    time.advance(1ms);
  }
  /// What the user's press does; "not ours" when another program gets it.
  std::string press(std::string_view keys) {
    const auto keystroke = keys == "f13" ? Keystroke{105, 0} : keyCombination(keys);
    const bool taken = desktop.parts().globalHotKeys.press(keystroke->keyCode, keystroke->flags);
    const auto done = std::exchange(actions, {});
    return done.empty() ? (taken ? "another program's" : "nobody's") : done.front();
  }
  std::string states() {
    std::string text;
    for (const auto& [shortcut, state] : manager.rows()) {
      text += state == ShortcutState::works ? "" : shortcut.keys + ": " + std::string(nameOf(state)) + "\n";
    }
    return text;
  }

  std::vector<std::string> actions;
  ShortcutManager manager{services, true};
  Subscription preferencesChanges;
};

TEST(Shortcuts, AreThoseOfTheSettings) {
  struct Case {
    std::string settings;
    std::string keys;
    std::string action;
  };
  const Case cases[] = {
      {"{}", "alt+tab", "tallowin://overview"},
      {"{}", "ctrl+alt+1", "tallowin://switch/1"},
      {"{}", "ctrl+alt+0", "tallowin://switch/10"},
      {"{}", "ctrl+alt+shift+0", "tallowin://move-window/10"},
      {"{}", "ctrl+alt+left", "tallowin://previous"},
      {"{}", "ctrl+alt+shift+right", "tallowin://move-window/next"},
      {"{}", "ctrl+alt+up", "nobody's"},
      {"{}", "ctrl+alt+m", "jump"},
      {"{}", "shift+ctrl+alt+m", "mark"},
      {R"({"gridColumns": 2})", "ctrl+alt+up", "tallowin://up"},
      {R"({"moveWindowShortcuts": false})", "ctrl+alt+shift+1", "nobody's"},
      {R"({"moveWindowShortcuts": false})", "ctrl+alt+shift+left", "nobody's"},
      {R"({"navigationShortcuts": false})", "ctrl+alt+right", "nobody's"},
      {R"({"desktopShortcutModifier": "off"})", "ctrl+alt+1", "nobody's"},
      {R"({"desktopShortcutModifier": "off"})", "alt+tab", "tallowin://overview"},
      {R"({"desktopShortcutModifier": "optionCommand"})", "alt+super+3", "tallowin://switch/3"},
      {R"({"desktopShortcutModifier": "controlCommand"})", "ctrl+cmd+shift+3", "tallowin://move-window/3"},
      {R"({"desktopShortcutModifier": "hyper"})", "ctrl+alt+shift+super+3", "tallowin://switch/3"},
      {R"({"overlayHotKey": "f13"})", "f13", "tallowin://overview"},
      {R"({"overlayHotKey": "optionBacktick"})", "alt+`", "tallowin://overview"},
      {R"({"shortcuts": {"Super+Space": "switch Mail"}})", "cmd+space", "switch Mail"},
      {R"({"shortcuts": {"alt+ctrl+1": "back"}})", "ctrl+alt+1", "back"},
  };
  ShortcutsProgram program;
  for (const auto& [settings, keys, action] : cases) {
    SCOPED_TRACE(settings + " " + keys);
    const auto changes = nlohmann::json::parse(settings);
    for (const auto& [key, value] : changes.items()) {
      program.set(key, value);
    }
    program.manager.refresh();
    EXPECT_EQ(program.press(keys), action);
    for (const auto& [key, value] : changes.items()) {
      program.preferences.removeObject(key);
    }
    program.time.advance(1ms);
  }
}

TEST(Shortcuts, TellOnceOfWhatAnotherProgramHasAndTryItAgain) {
  ShortcutsProgram program;
  program.state().takenHotKeys = {{18, ctrlAlt}, {48, CGEventFlag::alternate}};
  program.set("shortcuts", {{"ctrl+alt+k", "back"}, {"ctrl+what", "next"}});
  program.time.advance(2s);
  EXPECT_THAT(program.takeToasts(), ElementsAre("Shortcuts taken by other apps: Desktop 1 (keyboard)"));
  EXPECT_THAT(program.manager.failures(), ElementsAre("Overview", "Desktop 1"));
  EXPECT_EQ(
      program.states(),
      "ctrl+what: not a key combination\nalt+tab: taken by another program\nctrl+alt+1: taken by another program\n");
  EXPECT_EQ(program.press("ctrl+alt+1"), "another program's");
  EXPECT_EQ(program.settings.get(setting::overlayHotKey), OverlayHotKeyPreset::optionTab) << "not rewritten unasked";

  ASSERT_TRUE(program.desktop.alerts().answer("Use Ctrl+Alt+Space"));
  program.time.advance(2s);
  EXPECT_EQ(program.press("ctrl+alt+space"), "tallowin://overview");
  EXPECT_THAT(program.takeToasts(), IsEmpty()) << "told before";

  program.state().takenHotKeys.clear();
  EXPECT_EQ(program.states(), "ctrl+what: not a key combination\n");
  EXPECT_EQ(program.press("ctrl+alt+1"), "tallowin://switch/1");
}

TEST(Shortcuts, MayChangeWhileOneIsPressed) {
  ShortcutsProgram program;
  program.set("shortcuts", {{"ctrl+alt+k", "back"}});
  program.manager.onPressed = [&](const std::string& action) {
    program.actions.push_back(action);
    program.set("shortcuts", nlohmann::json::object());
  };
  EXPECT_EQ(program.press("ctrl+alt+k"), "back");
  EXPECT_EQ(program.press("ctrl+alt+k"), "nobody's");
}

}  // namespace
}  // namespace tallowin
