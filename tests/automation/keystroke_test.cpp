#include <gtest/gtest.h>

#include "automation/automation_runner.h"

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

}  // namespace
}  // namespace tallowin
