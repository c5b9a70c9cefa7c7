// Movers that end while a window is moved; and other applications' windows as elements, whose applications are slow,
// hang or refuse.

#include "windows/window_mover.h"

#include <gtest/gtest.h>

#include "tests/windows/windows_program.h"
#include "windows/driven/driven_windows.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;

constexpr auto oneWindow = R"({"applications": [{"pid": 10, "name": "Mail"}],
  "windows": [{"number": 10, "pid": 10, "frame": [200, 100, 600, 400], "space": 1}])";

/// Begins to move the window to the second desktop, by dragging it if the window server does not.
void move(WindowsProgram& program, bool follow, WindowMover::Completion completion) {
  program.mover->move({10, 10, program.state().window(10)->frame}, program.spaceNumbered(2), program.snapshot(), follow,
                      true, std::move(completion));
}

TEST(WindowMover, AMoverThatGoesNeverCompletesAndHoldsNothing) {
  WindowsProgram dragging(std::string(oneWindow) + R"(, "ignoredMoves": "all"})");
  int completed = 0;
  move(dragging, true, [&](WindowMover::Result) { ++completed; });
  dragging.time.advance(150ms);
  EXPECT_EQ(dragging.desktop.events().pressedMouseButtons(), 1U);
  dragging.mover.reset();
  EXPECT_EQ(dragging.desktop.events().pressedMouseButtons(), 0U);
  dragging.time.advance(2s);
  EXPECT_EQ(completed, 0);
  EXPECT_TRUE(dragging.state().spaces.isActive(1));
}

TEST(WindowMover, ACompletionMayEndTheMover) {
  for (const char* more : {"}", R"(, "ignoredMoves": "all"})"}) {
    WindowsProgram program(oneWindow + std::string(more));
    int completed = 0;
    move(program, false, [&](WindowMover::Result result) {
      EXPECT_TRUE(result) << more;
      ++completed;
      program.mover.reset();
    });
    program.time.advance(2s);
    EXPECT_EQ(completed, 1) << more;
  }
}

constexpr auto applications = R"({
  "applications": [{"pid": 7, "name": "Mail", "active": true}, {"pid": 8, "name": "Slow", "responseTime": 0.28}],
  "windows": [{"number": 2, "pid": 7}, {"number": 3, "pid": 8}]})";

TEST(AX, WaitsNoLongerThanTheMessagingTimeout) {
  SimulatedProgram program(applications);
  const AX ax(program.desktop.accessibility(), program.bridge);
  EXPECT_EQ(ax.element(3, 8), nullptr);
  const auto element = ax.element(3, 8, 300ms);
  ASSERT_NE(element, nullptr);
  EXPECT_TRUE(ax.setMinimized(element, true)) << "the timeout holds for elements reached through the application";
  program.state().application(8)->responseTime = 301ms;
  EXPECT_EQ(ax.frame(element), std::nullopt);
  EXPECT_FALSE(ax.setMinimized(element, false));
}

TEST(AX, AWindowThatDiesBetweenTwoCallsRefusesEverything) {
  SimulatedProgram program(applications);
  const AX ax(program.desktop.accessibility(), program.bridge);
  const auto element = ax.element(2, 7);
  EXPECT_TRUE(ax.setFrame(element, {{1, 2}, {300, 400}}));
  EXPECT_EQ(ax.frame(element), (CGRect{{1, 2}, {300, 400}}));
  EXPECT_TRUE(ax.close(element));
  EXPECT_EQ(ax.frame(element), std::nullopt);
  for (const auto& dead : {element, AXUIElement()}) {
    EXPECT_FALSE(ax.setFrame(dead, {}) || ax.setMinimized(dead, true) || ax.raise(dead) || ax.close(dead));
    EXPECT_TRUE(ax.elements(dead, "AXChildren").empty());
  }
}

}  // namespace
}  // namespace tallowin
