// Moving windows on a simulated desktop: private moves that work or lie, drags, and what is verified when; and other
// applications' windows as elements, whose applications are slow, hang or refuse.

#include "windows/window_mover.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/windows/windows_program.h"
#include "windows/driven/driven_windows.h"
#include "windows/driven/window_drag.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

struct MovingProgram : WindowsProgram {
  using WindowsProgram::WindowsProgram;

  [[nodiscard]] FrontWindow window(WindowNumber number) {
    const auto* const found = state().window(number);
    return found != nullptr ? FrontWindow{number, found->pid, found->frame} : FrontWindow{number, 7, {}};
  }

  void move(WindowNumber number, ManagedSpaceID target, bool follow, bool allowDrag) {
    mover->move(window(number), spaceNumbered(target), snapshot(), follow, allowDrag, noted());
  }

  void bringHere(WindowNumber number, ManagedSpaceID spaceID) {
    const auto [id, pid, frame] = window(number);
    mover->bringHere({id, pid, std::nullopt, "App", "", frame, spaceID}, snapshot(), noted());
  }

  /// Notes the outcome with its time in milliseconds since now.
  WindowMover::Completion noted() {
    return [this, start = time.elapsed()](WindowMover::Result result) {
      const auto took = std::chrono::duration_cast<std::chrono::milliseconds>(time.elapsed() - start).count();
      outcomes.push_back(
          std::to_string(took) + ": " +
          (result ? "moved" : std::string(description(result.error(), desktopTexts(DesktopKind::driven)))));
    };
  }

  std::vector<std::string> outcomes;
};

std::string scenario(std::string_view more = "") {
  return R"({"managedDisplaySpaces": [{"Display Identifier": "Main", "Current Space": {"ManagedSpaceID": 1}, "Spaces": [
      {"ManagedSpaceID": 1}, {"ManagedSpaceID": 2}, {"ManagedSpaceID": 3}, {"ManagedSpaceID": 9, "type": 4}]}],
    "applications": [{"pid": 7, "name": "Mail", "active": true}, {"pid": 8, "name": "Notes"}],
    "windows": [{"number": 10, "pid": 7, "frame": [200, 100, 600, 400], "space": 1},
                {"number": 11, "pid": 8, "frame": [900, 500, 150, 100], "space": 1},
                {"number": 12, "pid": 8, "space": 2}, {"number": 19, "pid": 8, "space": 9}])" +
         std::string(more) + "}";
}

// left display, with the menu bar: [1] 2 3     right display: [5] 6
constexpr auto twoDisplays = R"({"menuBarDisplay": "11111111-1111-4111-8111-111111111111",
  "displays": [{"id": 1, "uuid": "11111111-1111-4111-8111-111111111111", "bounds": [0, 0, 1000, 800]},
               {"id": 2, "uuid": "22222222-2222-4222-8222-222222222222", "bounds": [1000, 0, 600, 400]}],
  "managedDisplaySpaces": [
    {"Display Identifier": "11111111-1111-4111-8111-111111111111", "Current Space": {"ManagedSpaceID": 1},
     "Spaces": [{"ManagedSpaceID": 1}, {"ManagedSpaceID": 2}, {"ManagedSpaceID": 3}]},
    {"Display Identifier": "22222222-2222-4222-8222-222222222222", "Current Space": {"ManagedSpaceID": 5},
     "Spaces": [{"ManagedSpaceID": 5}, {"ManagedSpaceID": 6}]}],
  "applications": [{"pid": 7, "name": "Mail", "active": true}],
  "windows": [{"number": 10, "pid": 7, "space": 1}, {"number": 11, "pid": 7, "space": 1}]})";

TEST(WindowMover, ObjectionsComeBeforeAnythingIsMoved) {
  struct Case {
    WindowNumber window;
    ManagedSpaceID target;
    const char* outcome;
  };
  const Case cases[] = {
      {10, 9, "0: Windows cannot be moved into a full screen Space."},
      {19, 9, "0: Windows cannot be moved into a full screen Space."},
      {10, 1, "0: The window is already on that Space."},
      {19, 1, "0: Full screen windows cannot be moved to another Space."},
  };
  for (const auto& [window, target, outcome] : cases) {
    MovingProgram program(scenario());
    program.move(window, target, true, true);
    EXPECT_THAT(program.outcomes, ElementsAre(outcome));
    program.time.advance(2s);
    EXPECT_THAT(program.lines, IsEmpty());
    EXPECT_EQ(program.outcomes.size(), 1U);
  }
  MovingProgram program(scenario());
  program.move(77, 2, true, false);  // on no known Space
  program.time.advance(2s);
  EXPECT_THAT(program.outcomes, ElementsAre("120: macOS did not move the window."));
  EXPECT_EQ(program.take("SLSBridgedMoveWindowsToManagedSpaceOperation").size(), 1U);
}

TEST(WindowMover, WhoHasGoneElsewhereMeanwhileIsNotPulledBack) {
  struct Case {
    ManagedSpaceID target;
    std::optional<ManagedSpaceID> goesTo;
    std::size_t raised;
    ManagedSpaceID windowIsOn = target;
  };
  for (const auto& [target, goesTo, raised, windowIsOn] : {Case{2, {}, 1}, Case{2, 3, 0}, Case{2, 1, 0}, Case{2, 6, 1},
                                                           Case{6, {}, 1}, Case{6, 5, 0}, Case{2, {}, 0, 1}}) {
    MovingProgram program(twoDisplays);
    program.move(11, target, true, false);
    program.time.advance(300ms);
    if (goesTo) {
      program.desktop.parts().spaces.switchNow(*goesTo);
    }
    program.state().window(11)->spaces = {windowIsOn};
    program.time.advance(69ms);
    EXPECT_THAT(program.take("activateWithOptions"), IsEmpty());
    program.time.advance(1ms);
    EXPECT_EQ(program.take("activateWithOptions").size(), raised) << target << " then " << goesTo.value_or(0);
  }
}

TEST(WindowMover, WindowsAreGrabbedClearOfTheirButtons) {
  EXPECT_EQ(WindowDrag::grabPoint({{10, 20}, {600, 400}}), (CGPoint{90, 32}));
  EXPECT_EQ(WindowDrag::grabPoint({{10, 20}, {150, 400}}), (CGPoint{60, 32}));
}

TEST(WindowMover, AMoverThatGoesNeverCompletesAndHoldsNothing) {
  MovingProgram dragging(scenario(R"(, "ignoredMoves": "all")"));
  dragging.move(10, 2, true, true);
  dragging.time.advance(150ms);
  EXPECT_EQ(dragging.desktop.events().pressedMouseButtons(), 1U);
  dragging.mover.reset();
  EXPECT_EQ(dragging.desktop.events().pressedMouseButtons(), 0U);
  dragging.time.advance(2s);
  EXPECT_THAT(dragging.outcomes, IsEmpty());
  EXPECT_TRUE(dragging.state().spaces.isActive(1));
}

TEST(WindowMover, ACompletionMayEndTheMover) {
  for (const char* more : {"", R"(, "ignoredMoves": "all")"}) {
    MovingProgram program(scenario(more));
    int completed = 0;
    program.mover->move(program.window(10), program.spaceNumbered(2), program.snapshot(), false, true,
                        [&](WindowMover::Result result) {
                          EXPECT_TRUE(result) << more;
                          ++completed;
                          program.mover.reset();
                        });
    program.time.advance(2s);
    EXPECT_EQ(completed, 1) << more;
  }
}

TEST(WindowMover, WindowsAreBroughtToTheActiveSpaceOfTheirDisplay) {
  struct Case {
    WindowNumber window;
    ManagedSpaceID believedOn;
    ManagedSpaceID broughtTo;
  };
  for (const auto& [window, believedOn, broughtTo] : {Case{10, 2, 1}, {11, 6, 5}, {11, 77, 1}}) {
    MovingProgram program(twoDisplays);
    program.state().window(10)->spaces = {2};
    program.state().window(11)->spaces = {6};
    program.bringHere(window, believedOn);
    program.time.advance(1s);
    EXPECT_THAT(program.outcomes, ElementsAre("120: moved"));
    EXPECT_EQ(program.spacesOf(window), std::vector<ManagedSpaceID>{broughtTo});
    EXPECT_EQ(program.take("activateWithOptions").size(), 1U);
  }
  MovingProgram nowhere(R"({"managedDisplaySpaces": []})");
  nowhere.bringHere(10, 1);
  EXPECT_THAT(nowhere.outcomes, ElementsAre("0: There is no window to move."));

  MovingProgram lying(scenario(R"(, "ignoredMoves": "all")"));
  lying.bringHere(12, 2);
  lying.time.advance(1s);
  EXPECT_THAT(lying.outcomes, ElementsAre("120: macOS did not move the window."));
  EXPECT_THAT(lying.take("activateWithOptions"), IsEmpty());
}

TEST(WindowMover, TheFrontWindowIsTheFocusedOneElseTheFrontmostOnScreen) {
  struct Case {
    const char* applications;
    const char* windows;
    std::optional<WindowNumber> front;
  };
  const Case cases[] = {
      {R"({"pid": 7, "name": "Mail", "active": true}, {"pid": 8, "name": "Notes"})",
       R"({"number": 1, "pid": 8}, {"number": 2, "pid": 7, "frame": [0, 0, 20, 20]}, {"number": 3, "pid": 7})", 2},
      {R"({"pid": 7, "name": "Mail", "active": true, "responseTime": 0.3})",
       R"({"number": 2, "pid": 7, "frame": [0, 0, 20, 20]}, {"number": 3, "pid": 7})", 3},
      {R"({"pid": 7, "name": "Mail", "active": true, "responseTime": 0.25})",
       R"({"number": 2, "pid": 7, "frame": [0, 0, 20, 20]}, {"number": 3, "pid": 7})", 2},
      {R"({"pid": 7, "name": "Mail", "active": true, "responseTime": null})",
       R"({"number": 1, "pid": 8}, {"number": 2, "pid": 7, "frame": [0, 0, 60, 600]},
          {"number": 3, "pid": 7, "frame": [0, 0, 600, 60]}, {"number": 4, "pid": 7, "layer": 3},
          {"number": 5, "pid": 7, "frame": [0, 0, 60.5, 61]})",
       5},
      {R"({"pid": 7, "name": "Mail", "active": true})",
       R"({"number": 1, "pid": 8}, {"number": 2, "pid": 7, "space": 2})", std::nullopt},
      {R"({"pid": 7, "name": "Mail"})", R"({"number": 1, "pid": 7})", 1},
      {R"({"pid": 500, "name": "Tallowin", "active": true})",
       R"({"number": 1, "pid": 500, "frame": [0, 0, 20, 20]}, {"number": 2, "pid": 500})", 2},
  };
  for (const auto& [applications, windows, front] : cases) {
    MovingProgram program(R"({"applications": [)" + std::string(applications) + R"(], "windows": [)" + windows + "]}");
    const auto found = program.mover->frontWindow();
    EXPECT_EQ(found ? std::optional(found->id) : std::nullopt, front) << applications << windows;
    if (found) {
      EXPECT_EQ(found->frame, program.state().window(found->id)->frame);
      EXPECT_EQ(found->pid, program.state().window(found->id)->pid);
    }
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
