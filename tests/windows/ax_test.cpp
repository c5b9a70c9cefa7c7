// Other applications' windows as elements, on a simulated desktop whose applications are slow, hang or refuse.

#include "windows/ax.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/simulated_program.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;

constexpr auto applications = R"({
  "applications": [{"pid": 7, "name": "Mail", "active": true}, {"pid": 8, "name": "Slow", "responseTime": 0.28},
                   {"pid": 9, "name": "Stubborn", "refusesClose": true}],
  "windows": [{"number": 1, "pid": 7, "minimized": true}, {"number": 2, "pid": 7}, {"number": 3, "pid": 8},
              {"number": 4, "pid": 9}, {"number": 5, "pid": 7, "space": 2}]})";

TEST(AX, FindsWindowsByTheirNumberAndOwner) {
  SimulatedProgram program(applications);
  const AX ax(program.desktop.accessibility(), program.bridge);
  EXPECT_NE(ax.element(2, 7), nullptr);
  EXPECT_EQ(ax.element(2, 9), nullptr);
  EXPECT_EQ(ax.element(2, 77), nullptr);
  EXPECT_EQ(ax.element(5, 7), nullptr) << "it is on another Space";
  EXPECT_EQ(ax.focusedWindowID(7), 2U) << "a minimised window has no focus";
  EXPECT_EQ(ax.focusedWindowID(77), std::nullopt);
  EXPECT_EQ(program.bridge.CGSBridgeAXWindowID(ax.application(7)), std::nullopt) << "no window";
  program.state().accessibilityAllowed = false;
  EXPECT_EQ(ax.application(7), nullptr);
  EXPECT_EQ(ax.element(2, 7), nullptr);
}

TEST(AX, WaitsNoLongerThanTheMessagingTimeout) {
  SimulatedProgram program(applications);
  const AX ax(program.desktop.accessibility(), program.bridge);
  EXPECT_EQ(ax.element(3, 8), nullptr);
  EXPECT_EQ(ax.focusedWindowID(8), std::nullopt);
  const auto element = ax.element(3, 8, 300ms);
  ASSERT_NE(element, nullptr);
  EXPECT_TRUE(ax.setMinimized(element, true)) << "the timeout holds for elements reached through the application";
  program.state().application(8)->responseTime = 301ms;
  EXPECT_EQ(ax.frame(element), std::nullopt);
  EXPECT_FALSE(ax.setMinimized(element, false));
  EXPECT_TRUE(program.state().window(3)->minimized);
}

TEST(AX, AWindowThatDiesBetweenTwoCallsRefusesEverything) {
  SimulatedProgram program(applications);
  const AX ax(program.desktop.accessibility(), program.bridge);
  const auto element = ax.element(2, 7);
  EXPECT_TRUE(ax.setFrame(element, {{1, 2}, {300, 400}}));
  EXPECT_EQ(ax.frame(element), (CGRect{{1, 2}, {300, 400}}));
  auto& accessibility = program.desktop.accessibility();
  EXPECT_FALSE(accessibility.AXUIElementSetAttributeValue(element, "AXTitle", std::string("x"))) << "not to be set";
  const auto button = std::get<AXUIElement>(accessibility.AXUIElementCopyAttributeValue(element, "AXCloseButton"));
  EXPECT_TRUE(ax.close(element));
  EXPECT_EQ(program.state().window(2), nullptr);
  EXPECT_FALSE(ax.press(button));
  EXPECT_EQ(ax.frame(element), std::nullopt);
  for (const auto& dead : {element, AXUIElement()}) {
    EXPECT_FALSE(ax.setFrame(dead, {}));
    EXPECT_FALSE(ax.setMinimized(dead, true));
    EXPECT_FALSE(ax.raise(dead));
    EXPECT_FALSE(ax.press(dead));
    EXPECT_FALSE(ax.close(dead));
    EXPECT_EQ(ax.text(dead, "AXTitle"), std::nullopt);
    EXPECT_TRUE(ax.elements(dead, "AXChildren").empty());
  }
}

}  // namespace
}  // namespace tallowin
