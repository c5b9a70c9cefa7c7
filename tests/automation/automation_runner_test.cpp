#include "automation/automation_runner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/storing_program.h"

namespace tallowin {
namespace {

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

TEST(AutomationRunner, ListsTheUsersShortcuts) {
  StoringProgram program(
      R"({"programs": {"/usr/bin/shortcuts": {"output": " Zoom\r\n\nFocus Off \n\u00a0Éclair\n"}}})");
  AutomationRunner runner{program.services, [](const Space&) { return true; },
                          [](const Space&) { return std::set<ProcessID>(); }};
  EXPECT_THAT(runner.availableShortcuts(), testing::ElementsAre("Focus Off", "Zoom", "Éclair"));
  program.state().programs = {{"/usr/bin/shortcuts", {"", true}}};
  EXPECT_THAT(runner.availableShortcuts(), testing::IsEmpty());
}

}  // namespace
}  // namespace tallowin
