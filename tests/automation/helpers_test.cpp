// Keystrokes, browser tabs and note files.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "automation/browser_tabs.h"
#include "automation/keystroke.h"
#include "automation/note_files.h"
#include "tests/storing_program.h"

namespace tallowin {
namespace {

using testing::ElementsAre;

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
      {"name": "A \"B\\", "pid": 3, "bundleID": "com.brave.Browser"}, {"name": "Arc", "pid": 4, "bundleID": "company.thebrowser.Browser"},
      {"name": "Vivaldi", "bundleID": "com.vivaldi.Vivaldi"}],
    "appleScripts": {"tell application \"Safari\" to get URL of every tab of front window": ["https://a", "https://b"],
      "tell application \"A \\\"B\\\\\" to get URL of every tab of front window": ["https://c"],
      "tell application \"Vivaldi\" to get URL of every tab of front window": ["https://never"]}})");
  const BrowserTabs tabs(program.desktop.workspace(), program.desktop.appleScript());
  EXPECT_THAT(tabs.urls({"com.brave.Browser", "app.mail", "com.vivaldi.Vivaldi", "company.thebrowser.Browser",
                         "com.apple.Safari"}),
              ElementsAre("https://c", "https://a", "https://b"));
  EXPECT_EQ(program.take("executeAndReturnError").size(), 3U) << "only running browsers are asked";
  const auto reader = tabs.reader();
  EXPECT_TRUE(reader.isBrowser("com.apple.Safari"));
  EXPECT_FALSE(reader.isBrowser("app.mail"));
  EXPECT_THAT(reader.urls("com.apple.Safari"), ElementsAre("https://a", "https://b"));
}

TEST(NoteFiles, AreMadeOnceAndOpened) {
  StoringProgram program("{}");
  auto& files = program.desktop.files();
  auto& store = program.store;
  const NoteFiles notes(files, program.desktop.workspace(), program.desktop.folders());
  Space space;
  space.id = "x";
  store.setName("a/b:c", "x");
  const std::string file = "/home/user/Documents/Tallowin Notes/a-b-c.md";
  notes.open(space, store);
  EXPECT_EQ(files.read(file).value_or("none"), "# a/b:c\n\n\n\n- [ ] \n");
  EXPECT_EQ(program.take("openURL").at(0)["url"], "file:///home/user/Documents/Tallowin%20Notes/a-b-c.md");

  store.setNote("buy milk", "x");
  notes.open(space, store);
  EXPECT_EQ(files.read(file).value_or("none"), "# a/b:c\n\n\n\n- [ ] \n") << "the user's file is left alone";
  ASSERT_TRUE(files.remove(file));
  notes.open(space, store);
  EXPECT_EQ(files.read(file).value_or("none"), "# a/b:c\n\nbuy milk\n\n- [ ] \n");
  EXPECT_EQ(program.take("openURL").size(), 2U);
}

}  // namespace
}  // namespace tallowin
