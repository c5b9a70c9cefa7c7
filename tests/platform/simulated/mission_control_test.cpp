#include "platform/simulated/mission_control.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/simulated/simulated_element.h"
#include "platform/simulated/virtual_time.h"
#include "tests/platform/simulated/fake_desktops.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

AXValue read(const AXUIElement& element, std::string_view attribute) {
  return dynamic_cast<const SimulatedElement&>(*element).attribute(attribute);
}

std::string text(const AXUIElement& element, std::string_view attribute) {
  const auto value = read(element, attribute);
  return std::holds_alternative<std::string>(value) ? std::get<std::string>(value) : "";
}

bool press(const AXUIElement& element) {
  return element != nullptr && dynamic_cast<const SimulatedElement&>(*element).perform("AXPress");
}

class MissionControlTest : public testing::Test {
 protected:
  void open() {
    missionControl->notify(MissionControl::awakeNotification);
    time.advance(250ms);
  }

  /// The buttons in the Spaces bars, as a walk through the Dock's tree finds them.
  std::vector<AXUIElement> buttons() {
    std::vector<AXUIElement> found;
    collect(missionControl->dockElement(), 0, false, found);
    return found;
  }

  void collect(const AXUIElement& element, int depth, bool inBar, std::vector<AXUIElement>& found) {
    ASSERT_LE(depth, 6);
    inBar = inBar || text(element, "AXTitle") == "Spaces Bar";
    if (inBar && text(element, "AXRole") == "AXButton") {
      found.push_back(element);
    }
    const auto children = read(element, "AXChildren");
    if (const auto* const list = std::get_if<std::vector<AXUIElement>>(&children)) {
      for (const auto& child : *list) {
        collect(child, depth + 1, inBar, found);
      }
    }
  }

  AXUIElement labelled(const std::string& label) {
    for (const auto& button : buttons()) {
      if (text(button, "AXTitle") + text(button, "AXDescription") == label) {
        return button;
      }
    }
    return nullptr;
  }

  CGPoint cornerOf(const std::string& label) { return std::get<CGPoint>(read(labelled(label), "AXPosition")); }

  VirtualTime time;
  FakeDesktops desktops;
  std::unique_ptr<MissionControl> missionControl = std::make_unique<MissionControl>(
      desktops, time,
      [](const std::string& display) { return CGRect{{display == "Left" ? 0.0 : 1000.0, 0}, {1000, 800}}; });
};

TEST_F(MissionControlTest, choosingADesktopSwitchesAndCloses) {
  open();
  EXPECT_TRUE(press(labelled("Desktop 3")));
  EXPECT_THAT(desktops.switched, ElementsAre(3));
  EXPECT_THAT(desktops.causes, ElementsAre(SwitchCause::missionControl));
  EXPECT_FALSE(missionControl->isOpen());
  open();
  const auto corner = cornerOf("Full Screen");
  EXPECT_TRUE(missionControl->clicked({corner.x + 50, corner.y + 50}));
  EXPECT_THAT(desktops.switched, ElementsAre(3, 9));
  EXPECT_FALSE(missionControl->clicked({corner.x + 50, corner.y + 50})) << "closed, it takes no clicks";
}

TEST_F(MissionControlTest, theBadgeInTheCornerRemovesOnceItShows) {
  open();
  const auto corner = cornerOf("Desktop 5");
  missionControl->pointerMoved({corner.x + 80, corner.y + 50});
  time.advance(400ms);
  missionControl->pointerMoved({corner.x + 6, corner.y + 6});
  EXPECT_TRUE(missionControl->clicked({corner.x + 6, corner.y + 6}));
  EXPECT_THAT(desktops.removed, ElementsAre(6));
  EXPECT_THAT(desktops.switched, IsEmpty());

  const auto last = cornerOf("Desktop 4");
  missionControl->pointerMoved({last.x + 6, last.y + 6});
  time.advance(1s);
  EXPECT_EQ(labelled("Remove Desktop"), nullptr) << "the last desktop of a display stays";
  missionControl->clicked({last.x + 6, last.y + 6});
  EXPECT_THAT(desktops.switched, ElementsAre(5)) << "without a badge it is a click on the thumbnail";
}

TEST_F(MissionControlTest, theNotificationClosesWhatIsOpen) {
  open();
  missionControl->pointerMoved({500, 700});
  missionControl->notify(MissionControl::awakeNotification);
  EXPECT_FALSE(missionControl->isOpen());
}

TEST_F(MissionControlTest, elementsOutliveIt) {
  open();
  const auto dock = missionControl->dockElement();
  const auto button = labelled("Desktop 2");
  missionControl.reset();
  EXPECT_EQ(read(dock, "AXTitle"), AXValue());
  EXPECT_FALSE(press(button));
}

}  // namespace
}  // namespace tallowin
