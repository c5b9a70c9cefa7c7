// The shortcuts that the settings ask for, and the keys that are taken for them on a simulated desktop.

#include <gtest/gtest.h>

#include "tests/storing_program.h"
#include "triggers/shortcut_manager.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;

struct ShortcutsProgram : StoringProgram {
  ShortcutsProgram() : StoringProgram("{}") {
    manager.onPressed = [this](const std::string& action) { actions.push_back(action); };
    preferencesChanges = preferences.observe([this] { manager.refresh(); });
  }

  void set(std::string_view key, const PropertyList& value) {
    preferences.setObject(key, value);
    time.advance(1ms);
  }
  /// What the user's press does.
  std::string press(std::string_view keys) {
    const auto keystroke = keys == "f13" ? Keystroke{105, 0} : keyCombination(keys);
    desktop.parts().globalHotKeys.press(keystroke->keyCode, keystroke->flags);
    const auto done = std::exchange(actions, {});
    return done.empty() ? "nobody's" : done.front();
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
