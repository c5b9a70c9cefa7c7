// Switching on a simulated desktop, whose Dock understands gestures and hot keys as the real one does.

#include "commands/space_switcher.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

#include "base/preferences.h"
#include "commands/driven/dock_swipe_poster.h"
#include "tests/simulated_program.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// A program with a switcher.
struct SwitchingProgram : SimulatedProgram {
  explicit SwitchingProgram(std::string_view scenarioJSON) : SimulatedProgram(scenarioJSON) { lines.clear(); }

  /// Switches to the Space with this managed id, by a snapshot taken now.
  bool switchTo(ManagedSpaceID managedID) { return switcher.switchTo(spaceNumbered(managedID), snapshot()); }

  /// The managed ids of the active Spaces, display by display.
  [[nodiscard]] std::vector<ManagedSpaceID> active() const {
    std::vector<ManagedSpaceID> ids;
    for (const auto& space : snapshot().activeSpaces()) {
      ids.push_back(space.managedID);
    }
    return ids;
  }

  /// The keys that a switch pressed.
  [[nodiscard]] std::vector<int> pressed() {
    std::vector<int> keys;
    for (const auto& record : take("CGEventPost")) {
      if (record.value("down", false)) {
        keys.push_back(record.at("keyCode"));
      }
    }
    return keys;
  }

  SpaceSwitcher switcher{SwitchServices{platform, settings}};
};

constexpr auto twoDisplays = R"({"menuBarDisplay": "11111111-1111-4111-8111-111111111111",
  "displays": [
    {"id": 1, "uuid": "11111111-1111-4111-8111-111111111111", "name": "Left", "bounds": [0, 0, 1000, 800], "main": true},
    {"id": 2, "uuid": "22222222-2222-4222-8222-222222222222", "name": "Right", "bounds": [1000, 100, 600, 400]}],
  "pointer": [500, 400],
  "managedDisplaySpaces": [
    {"Display Identifier": "11111111-1111-4111-8111-111111111111", "Current Space": {"ManagedSpaceID": 1},
     "Spaces": [{"ManagedSpaceID": 1}, {"ManagedSpaceID": 2, "type": 4, "pid": 9}, {"ManagedSpaceID": 3}]},
    {"Display Identifier": "22222222-2222-4222-8222-222222222222", "Current Space": {"ManagedSpaceID": 4},
     "Spaces": [{"ManagedSpaceID": 4}, {"uuid": "no Space"}, {"ManagedSpaceID": 5}]}]})";

std::string desktops(int count, const std::string& more) {
  auto spaces = PropertyList::array();
  for (int i = 1; i <= count; ++i) {
    spaces.push_back({{"ManagedSpaceID", i}});
  }
  return R"({"managedDisplaySpaces": [{"Display Identifier": "Main", "Current Space": {"ManagedSpaceID": 1}, "Spaces": )" +
         spaces.dump() + "}]" + more + "}";
}

TEST(SpaceSwitcher, TheActiveSpaceNeedsNothingNotEvenPermission) {
  SwitchingProgram program(R"({"permissions": {"accessibility": false}})");
  EXPECT_TRUE(program.switchTo(1));
  EXPECT_THAT(program.lines, IsEmpty());
  SwitchingProgram without(
      R"({"managedDisplaySpaces": [{"Display Identifier": "Main", "Spaces": [{"ManagedSpaceID": 1}]}]})");
  EXPECT_FALSE(without.switchTo(1));
  EXPECT_THAT(without.takeLog(), ElementsAre("target display or current space missing"));
}

TEST(ScrollingDirection, IsNaturalUnlessThePreferenceIsZeroOrFalse) {
  EXPECT_TRUE(isNaturalScrolling(std::nullopt));
  for (const auto* natural : {"1", "-3", "\"no\"", "true"}) {
    EXPECT_TRUE(isNaturalScrolling(PropertyList::parse(natural))) << natural;
  }
  for (const auto* reversed : {"0", "false"}) {
    EXPECT_FALSE(isNaturalScrolling(PropertyList::parse(reversed))) << reversed;
  }
}

TEST(SpaceSwitcher, ThePointerIsBroughtToTheDisplayThatIsToSwitch) {
  SwitchingProgram program(twoDisplays);
  EXPECT_TRUE(program.switchTo(5));
  EXPECT_THAT(program.take("CGWarpMouseCursorPosition"),
              ElementsAre(nlohmann::ordered_json{{"position", {1300.0, 300.0}}}));
  program.time.advance(1s);
  // The entry between the two Spaces is no Space, but counts as a position: one step too many stays at the end.
  EXPECT_THAT(program.active(), ElementsAre(1, 5));
  EXPECT_TRUE(program.switchTo(4));
  EXPECT_THAT(program.take("CGWarpMouseCursorPosition"), IsEmpty());
}

TEST(SpaceSwitcher, ClassicSwitchesPressTheDesktopsOwnHotKeyOrStep) {
  // Desktop 17 has no hot key of its own.
  for (const auto& [target, keys] :
       {std::pair<ManagedSpaceID, std::vector<int>>{2, {19}}, {16, {22}}, {17, std::vector<int>(16, 124)}}) {
    SwitchingProgram program(desktops(18, R"(, "preferences": {"switchMode": "classic"})"));
    EXPECT_TRUE(program.switchTo(target));
    EXPECT_EQ(program.pressed(), keys);
    program.time.advance(1s);
    EXPECT_THAT(program.active(), ElementsAre(target));
  }
}

TEST(SpaceSwitcher, AHeldMouseButtonMeansClassic) {
  SwitchingProgram program(R"({"pressedMouseButtons": 1})");
  EXPECT_TRUE(program.switchTo(2));
  EXPECT_THAT(program.pressed(), ElementsAre(19));
}

/// "119 on" and so on.
std::vector<std::string> toggled(SimulatedProgram& program) {
  std::vector<std::string> result;
  for (const auto& record : program.take("CGSSetSymbolicHotKeyEnabled")) {
    result.push_back(record.at("hotKey").dump() + (record.at("enabled") == true ? " on" : " off"));
  }
  return result;
}

TEST(SpaceSwitcher, AHotKeyThatIsOffIsOnUntil1500MillisecondsAfterTheLastPress) {
  SwitchingProgram program(R"({"preferences": {"switchMode": "classic"}, "symbolicHotKeys": {
    "119": {"keyCode": 19, "modifiers": 262144, "enabled": false},
    "120": {"keyCode": 20, "modifiers": 262144, "enabled": false}}})");
  EXPECT_TRUE(program.switchTo(2));
  EXPECT_THAT(toggled(program), ElementsAre("119 on"));
  program.time.advance(1s);
  EXPECT_THAT(program.active(), ElementsAre(2));
  EXPECT_TRUE(program.switchTo(3));
  EXPECT_THAT(toggled(program), ElementsAre("120 on"));
  program.time.advance(1s);
  EXPECT_TRUE(program.switchTo(1)) << "its hot key is on already, and the press still postpones the restore";
  program.time.advance(1499ms);
  EXPECT_THAT(toggled(program), IsEmpty());
  program.time.advance(1ms);
  EXPECT_THAT(toggled(program), ElementsAre("119 off", "120 off"));
}

TEST(SpaceSwitcher, AReturnThatIsLateOrNotSeenIsNoBounce) {
  SwitchingProgram program(R"({"dock": {"switchTime": 0.03, "bounces": {"count": 9, "after": 0.33}}})");
  for (int i = 0; i < 4; ++i) {
    EXPECT_TRUE(program.switchTo(2));
    program.time.advance(50ms);
    program.switcher.observe(program.snapshot());
    program.time.advance(310ms);  // back after 360 ms: somebody's wish
    EXPECT_THAT(program.active(), ElementsAre(1));
    program.switcher.observe(program.snapshot());
    program.time.advance(1s);
  }
  EXPECT_THAT(program.takeLog(), IsEmpty());
}

TEST(SpaceSwitcher, TheDisplayUnderTheMouseIsTheOneThatHoldsIt) {
  struct Case {
    CGPoint pointer;
    std::optional<std::string> display;
  };
  const Case cases[] = {
      {{0, 0}, "11111111-1111-4111-8111-111111111111"},      {{999, 799}, "11111111-1111-4111-8111-111111111111"},
      {{1000, 100}, "22222222-2222-4222-8222-222222222222"}, {{1000, 99}, std::nullopt},
      {{1599, 499}, "22222222-2222-4222-8222-222222222222"}, {{-1, 5}, std::nullopt}};
  SwitchingProgram program(twoDisplays);
  for (const auto& [pointer, display] : cases) {
    program.state().pointer = pointer;
    const auto found = program.switcher.displayUnderMouse(program.snapshot());
    EXPECT_EQ(found ? std::optional(found->id) : std::nullopt, display) << pointer.x << ", " << pointer.y;
  }
  EXPECT_EQ(program.switcher.displayUnderMouse(SpaceSnapshot::empty()), std::nullopt);
  auto single = program.snapshot();
  ASSERT_EQ(single.displays.size(), 2U);
  single.displays.pop_back();
  EXPECT_EQ(program.switcher.displayUnderMouse(single)->id, single.displays.front().id) << "wherever the pointer is";
}

TEST(FixedPoint, CutsOffTowardZeroAndStaysWithinRange) {
  const std::pair<double, std::int32_t> cases[] = {
      {0.0, 0},
      {0.1, 6553},
      {-0.1, -6553},
      {1.0, 0x10000},
      {-9999.0, -655294464},
      {32767.99999, 0x7fffffff},
      {32768.0, 0x7fffffff},
      {-32768.0, std::numeric_limits<std::int32_t>::min()},
      {-1e300, std::numeric_limits<std::int32_t>::min()},
      {std::numeric_limits<double>::infinity(), 0x7fffffff},
      {std::nan(""), 0},
  };
  for (const auto& [value, expected] : cases) {
    EXPECT_EQ(fixed(value), expected) << value;
  }
}

}  // namespace
}  // namespace tallowin
