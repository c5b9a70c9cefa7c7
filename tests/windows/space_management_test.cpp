// Which buttons of Mission Control are pressed, in trees of elements made for the test.

#include "windows/space_management.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/simulated_program.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

/// An element with the attributes that it was given, which notes that it was pressed.
struct Node : AXElementHandle {
  std::map<std::string, AXValue, std::less<>> attributes;
  mutable int pressed = 0;
};

/// The Dock's tree as a test makes it.
class DockTree : public Accessibility {
 public:
  explicit DockTree(std::shared_ptr<Node> root) : root_(std::move(root)) {}

  bool AXIsProcessTrusted() override { return true; }
  bool AXIsProcessTrustedWithOptions(bool /*prompt*/) override { return true; }
  AXUIElement AXUIElementCreateApplication(ProcessID /*pid*/) override { return root_; }
  void AXUIElementSetMessagingTimeout(const AXUIElement& /*element*/, Duration /*timeout*/) override {}
  AXValue AXUIElementCopyAttributeValue(const AXUIElement& element, std::string_view attribute) override {
    const auto& attributes = static_cast<const Node&>(*element).attributes;
    const auto found = attributes.find(attribute);
    return found != attributes.end() ? found->second : AXValue();
  }
  bool AXUIElementSetAttributeValue(const AXUIElement& /*element*/, std::string_view /*attribute*/,
                                    const AXValue& /*value*/) override {
    return false;
  }
  bool AXUIElementPerformAction(const AXUIElement& element, std::string_view /*action*/) override {
    return ++static_cast<const Node&>(*element).pressed > 0;
  }

 private:
  std::shared_ptr<Node> root_;
};

using NodePtr = std::shared_ptr<Node>;

NodePtr node(const char* role, const char* title, const char* description, const std::vector<AXUIElement>& children) {
  auto result = std::make_shared<Node>();
  result->attributes = {{"AXRole", role}, {"AXTitle", title}, {"AXDescription", description}, {"AXChildren", children}};
  return result;
}

NodePtr button(const char* title, const char* description) {
  return node("AXButton", title, description, {});
}

struct ManagingProgram : SimulatedProgram {
  explicit ManagingProgram(NodePtr root)
      : SimulatedProgram("{}"), tree(std::move(root)), drivenBy{bridge, tree, desktop.windowList()} {
    management.emplace(simulatedPlatform(desktop, drivenSpaces, drivenBy, windowService, preferences, images, time));
    lines.clear();
  }

  /// Notes the outcome with its time in milliseconds.
  SpaceManagement::Completion noted(decltype(&additionFailure) failure = &additionFailure) {
    return [this, failure](SpaceManagement::Result result) {
      const auto now = std::chrono::duration_cast<std::chrono::milliseconds>(time.elapsed()).count();
      outcomes.push_back(std::to_string(now) + ": " +
                         (result ? "done" : std::string(failure(result.error(), desktopTexts(DesktopKind::driven)))));
    };
  }

  /// Where the pointer and its button went.
  [[nodiscard]] std::vector<std::string> takeDeeds() {
    std::vector<std::string> deeds;
    for (const auto& line : std::exchange(lines, {})) {
      const auto record = nlohmann::json::parse(line);
      if (record["op"] == "CGWarpMouseCursorPosition") {
        deeds.push_back("warp " + record["position"].dump());
      } else if (record["op"] == "CGEventPost" && record.contains("location")) {
        deeds.push_back(record["type"].get<std::string>() + " " + record["location"].dump());
      }
    }
    return deeds;
  }

  DockTree tree;
  DrivenServices drivenBy;
  std::vector<std::string> outcomes;
  std::optional<SpaceManagement> management;
};

TEST(SpaceManagement, FindsButtonsOfTheBarAndNoOthers) {
  const auto outside = button("", "add desktop");
  const auto icon = button("", "add desktop");
  const auto tooDeep = button("", "add desktop");
  const auto deepest = button("", "add desktop");
  const auto bar =
      node("AXGroup", "Spaces Bar", "",
           {node("AXDockItem", "", "", {icon}),
            // The bar is at depth 2, so that this group's child's child is at depth 5.
            node("AXGroup", "", "",
                 {node("AXGroup", "", "", {node("AXList", "", "", {node("AXGroup", "", "", {tooDeep}), deepest})})})});
  ManagingProgram program(node("AXApplication", "Dock", "", {outside, node("AXGroup", "", "", {bar})}));
  program.management->addDesktop(program.noted());
  program.time.advance(1s);
  EXPECT_THAT(program.outcomes, ElementsAre("500: done"));
  EXPECT_EQ(deepest->pressed, 1);
  EXPECT_EQ(outside->pressed + icon->pressed + tooDeep->pressed, 0);

  ManagingProgram barless(node("AXApplication", "Dock", "", {outside}));
  barless.management->addDesktop(barless.noted());
  barless.time.advance(5s);
  EXPECT_THAT(barless.outcomes, ElementsAre("2350: Mission Control could not be opened."));
}

TEST(SpaceManagement, PrefersTitlesToDescriptionsAndBearsElementsThatDie) {
  const auto described = button("", "Desktop 2");
  const auto titled = button("Desktop 2", "");
  const auto close = button("", "CLOSE this Desktop");
  for (const auto& element : {described, titled}) {
    element->attributes["AXPosition"] = element == titled ? CGPoint{100, 200} : CGPoint{0, 0};
    element->attributes["AXSize"] = CGSize{40, 20};
  }
  const auto dock = node("AXApplication", "Dock", "", {node("AXGroup", "Spaces Bar", "", {described, titled, close})});
  ManagingProgram program(dock);
  program.management->removeDesktop(2, program.noted());
  EXPECT_EQ(program.takeDeeds().front(), "warp [120.0,210.0]");
  dock->attributes["AXChildren"] = std::monostate();  // the Dock restarts
  program.time.advance(3s);
  EXPECT_EQ(close->pressed, 0);
  EXPECT_THAT(program.outcomes, ElementsAre("1300: done"));
  EXPECT_THAT(program.takeDeeds(), testing::IsSupersetOf({"leftMouseDown [106.0,206.0]", "leftMouseUp [106.0,206.0]"}));

  titled->attributes.erase("AXSize");
  dock->attributes["AXChildren"] =
      std::vector<AXUIElement>{node("AXGroup", "Spaces Bar", "", {described, titled, nullptr, close})};
  program.management->removeDesktop(2, program.noted(&removalFailure));
  EXPECT_EQ(program.outcomes.back(), "3000: That desktop was not found in Mission Control.");
  titled->attributes.clear();
  program.management->removeDesktop(2, program.noted());
  program.time.advance(3s);
  EXPECT_EQ(program.outcomes.back(), "4300: done") << "by its description";
  EXPECT_EQ(close->pressed, 1);
}

}  // namespace
}  // namespace tallowin
