// Marking windows with letters and jumping back to them, on a simulated desktop.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/windows/windows_program.h"
#include "windows/window_marks.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// The keys of some letters on the ANSI keyboard.
constexpr VirtualKeyCode keyA = 0;
constexpr VirtualKeyCode keyM = 46;
constexpr VirtualKeyCode keyZ = 6;

constexpr auto mailAndNotes = R"({"applications": [{"name": "Mail", "pid": 11, "bundleID": "app.mail", "active": true},
    {"name": "Notes", "pid": 12, "bundleID": "app.notes"}],
  "windows": [{"number": 111, "pid": 11, "space": 1}, {"number": 121, "pid": 12, "space": 1},
              {"number": 122, "pid": 12, "space": 3}]})";

struct MarkingProgram : WindowsProgram {
  explicit MarkingProgram(std::string_view scenarioJSON = mailAndNotes) : WindowsProgram(scenarioJSON) {}

  bool press(VirtualKeyCode key) { return desktop.parts().globalHotKeys.press(key, 0); }

  std::vector<std::string> switches;
  WindowMarks marks{services, *mover, [this](const Space& space) {
                      switches.push_back(space.id);
                      desktop.parts().spaces.switchNow(space.managedID);
                    }};
};

TEST(WindowMarks, TakesTheLetterKeysThatAreFreeUntilOneIsPressed) {
  MarkingProgram program;
  program.state().takenHotKeys = {{keyA, 0}};
  std::string letters;
  for (VirtualKeyCode key = 0; key < 128; ++key) {  // every key of the keyboard, one capture each
    std::string pressed;
    program.marks.captureLetter([&](const std::string& letter) { pressed = letter; });
    if (program.press(key) && !pressed.empty()) {
      letters += pressed;
      EXPECT_FALSE(program.press(key)) << "given back";
    }
  }
  EXPECT_EQ(letters, "SDFHGZXCVBQWERYTOUIPLJKNM") << "another program has A";
}

TEST(WindowMarks, WaitsForTwoSecondsAndForTheLastCaptureOnly) {
  MarkingProgram program;
  std::vector<std::string> told;
  const auto note = [&told](const char* capture) {
    return [&told, capture](const std::string& letter) { told.push_back(capture + (" " + letter)); };
  };
  program.marks.captureLetter(note("first"));
  program.time.advance(1s);
  program.marks.captureLetter(note("second"));
  program.time.advance(2s - 1ms);
  EXPECT_TRUE(program.press(keyZ));
  EXPECT_THAT(told, ElementsAre("second Z"));
  program.marks.captureLetter([&](const std::string&) { program.marks.captureLetter(note("nested")); });
  EXPECT_TRUE(program.press(keyA));
  EXPECT_TRUE(program.press(keyM));
  EXPECT_THAT(told, ElementsAre("second Z", "nested M"));
  program.marks.captureLetter(note("late"));
  program.time.advance(2s);
  EXPECT_FALSE(program.press(keyA));
  EXPECT_THAT(told, SizeIs(2));
}

TEST(WindowMarks, MarkTheWindowThatWasInFrontWhenAsked) {
  MarkingProgram program;
  program.marks.setMark();
  program.desktop.parts().workspace.activate(12);
  EXPECT_TRUE(program.press(keyM));
  EXPECT_EQ(program.marks.find("M"), (WindowRef{111, 11}));
  program.lines.clear();
  program.marks.jumpToMark("M");
  EXPECT_THAT(program.take("activateWithOptions"), SizeIs(1)) << "at once on the active Space";
  EXPECT_THAT(program.switches, IsEmpty());
}

TEST(WindowMarks, AMarkFollowsItsWindowAndDiesWithIt) {
  MarkingProgram program;
  program.marks.setMark("X");
  EXPECT_THAT(program.takeToasts(), ElementsAre("Marked as X (bookmark.fill)"));
  program.state().window(111)->spaces = {3};
  program.marks.jumpToMark("X");
  EXPECT_THAT(program.switches, ElementsAre(program.spaceNumbered(3).id));
  program.time.advance(1s);
  program.closeWindow(111);
  program.lines.clear();
  program.marks.jumpToMark("X");
  program.time.advance(1s);
  EXPECT_THAT(program.lines, IsEmpty());

  MarkingProgram empty("{}");
  empty.marks.setMark();
  empty.marks.setMark("A");
  EXPECT_THAT(empty.takeToasts(), ElementsAre("No window to mark", "No window to mark"));
  EXPECT_FALSE(empty.press(keyA)) << "no letter is asked for";
}

}  // namespace
}  // namespace tallowin
