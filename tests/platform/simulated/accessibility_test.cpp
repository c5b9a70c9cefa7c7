#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/platform/simulated/story.h"

namespace tallowin {
namespace {

using testing::ElementsAre;

constexpr auto threeWindows = R"({
  "applications": [{"pid": 7, "name": "Mail", "active": true}, {"pid": 8, "name": "Notes"}],
  "windows": [{"number": 1, "pid": 7, "title": "Inbox", "space": 1},
              {"number": 2, "pid": 8, "title": "List", "space": 1},
              {"number": 3, "pid": 8, "title": "Draft", "space": 1, "frame": [1, 2, 30, 40]},
              {"number": 4, "pid": 8, "title": "Elsewhere", "space": 2}]})";

class SimulatedAccessibilityTest : public testing::Test {
 protected:
  AXValue read(const AXUIElement& element, std::string_view attribute) {
    return accessibility.AXUIElementCopyAttributeValue(element, attribute);
  }

  AXUIElement windowTitled(ProcessID pid, const std::string& title) {
    const auto windows = read(accessibility.AXUIElementCreateApplication(pid), "AXWindows");
    for (const auto& window : std::get<std::vector<AXUIElement>>(windows)) {
      if (read(window, "AXTitle") == AXValue(title)) {
        return window;
      }
    }
    return nullptr;
  }

  std::vector<WindowNumber> order() {
    std::vector<WindowNumber> numbers;
    std::ranges::transform(story.parts.state.windows, std::back_inserter(numbers), &SimulatedWindow::number);
    return numbers;
  }

  Story story{threeWindows};
  Accessibility& accessibility = story.desktop.accessibility();
};

TEST_F(SimulatedAccessibilityTest, applicationsShowTheirWindowsOnTheActiveSpaces) {
  EXPECT_EQ(windowTitled(8, "Elsewhere"), nullptr);
  const auto draft = windowTitled(8, "Draft");
  ASSERT_NE(draft, nullptr);
  EXPECT_EQ(read(draft, "AXRole"), AXValue("AXWindow"));
  EXPECT_EQ(read(draft, "AXPosition"), AXValue(CGPoint{1, 2}));
  EXPECT_EQ(read(draft, "AXSize"), AXValue(CGSize{30, 40}));
  EXPECT_EQ(read(draft, "AXMain"), AXValue(false));
  EXPECT_EQ(read(draft, "AXNonsense"), AXValue());
  const auto getWindow = story.function<private_functions::AXUIElementGetWindow>("_AXUIElementGetWindow");
  WindowNumber number = 0;
  EXPECT_EQ(getWindow(draft->reference(), &number), 0);
  EXPECT_EQ(number, 3U);
  const auto application = accessibility.AXUIElementCreateApplication(8);
  EXPECT_NE(getWindow(application->reference(), &number), 0);
  EXPECT_NE(getWindow(nullptr, &number), 0);
  EXPECT_EQ(read(accessibility.AXUIElementCreateApplication(99), "AXWindows"), AXValue()) << "no such process";
  EXPECT_EQ(read(nullptr, "AXTitle"), AXValue());
}

TEST_F(SimulatedAccessibilityTest, raisingReordersWithinTheApplicationUntilItIsActive) {
  EXPECT_TRUE(accessibility.AXUIElementPerformAction(windowTitled(8, "Draft"), "AXRaise"));
  EXPECT_THAT(order(), ElementsAre(1, 3, 2, 4));
  EXPECT_TRUE(story.desktop.workspace().activateWithOptions(8));
  EXPECT_THAT(order(), ElementsAre(3, 2, 4, 1));
  EXPECT_TRUE(accessibility.AXUIElementSetAttributeValue(windowTitled(8, "List"), "AXMain", true));
  EXPECT_THAT(order(), ElementsAre(2, 3, 4, 1));
}

TEST_F(SimulatedAccessibilityTest, attributesAreSetAndWrittenDown) {
  const auto draft = windowTitled(8, "Draft");
  EXPECT_TRUE(accessibility.AXUIElementSetAttributeValue(draft, "AXPosition", CGPoint{5, 6}));
  EXPECT_TRUE(accessibility.AXUIElementSetAttributeValue(draft, "AXSize", CGSize{70, 80}));
  EXPECT_TRUE(accessibility.AXUIElementSetAttributeValue(draft, "AXMinimized", true));
  EXPECT_FALSE(accessibility.AXUIElementSetAttributeValue(draft, "AXSize", CGPoint{1, 1})) << "a point is no size";
  EXPECT_FALSE(accessibility.AXUIElementSetAttributeValue(draft, "AXTitle", std::string("x")));
  EXPECT_EQ(story.parts.state.window(3)->frame, (CGRect{{5, 6}, {70, 80}}));
  EXPECT_TRUE(story.parts.state.window(3)->minimized);
  EXPECT_EQ(
      story.journal("AXUIElementSetAttributeValue").front(),
      R"({"element":{"role":"AXWindow","window":3,"AXTitle":"Draft"},"attribute":"AXPosition","value":[5.0,6.0]})");
}

TEST_F(SimulatedAccessibilityTest, theCloseButtonClosesAndTheElementIsThenEmpty) {
  const auto draft = windowTitled(8, "Draft");
  const auto button = std::get<AXUIElement>(read(draft, "AXCloseButton"));
  EXPECT_TRUE(accessibility.AXUIElementPerformAction(button, "AXPress"));
  EXPECT_THAT(order(), ElementsAre(1, 2, 4));
  EXPECT_EQ(read(draft, "AXTitle"), AXValue());
  EXPECT_FALSE(accessibility.AXUIElementPerformAction(draft, "AXRaise"));
  EXPECT_FALSE(accessibility.AXUIElementPerformAction(button, "AXPress"));
}

}  // namespace
}  // namespace tallowin
