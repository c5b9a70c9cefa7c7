// Switching on a simulated desktop, whose Dock understands gestures and hot keys as the real one does.

#include "commands/space_switcher.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
  bool switchTo(ManagedSpaceID managedID) {
    const auto now = snapshot();
    for (const auto& space : now.allSpaces()) {
      if (space.managedID == managedID) {
        return switcher->switchTo(space, now);
      }
    }
    return false;
  }

  /// The managed ids of the active Spaces, display by display.
  [[nodiscard]] std::vector<ManagedSpaceID> active() const {
    std::vector<ManagedSpaceID> ids;
    for (const auto& space : snapshot().activeSpaces()) {
      ids.push_back(space.managedID);
    }
    return ids;
  }

  /// What a switch did, as the Dock's gestures (direction and phase) or keys (code and "down" or "up").
  [[nodiscard]] std::vector<std::string> posted() {
    std::vector<std::string> events;
    for (const auto& record : take("CGEventPost")) {
      if (record.contains("keyCode")) {
        events.push_back(record.at("keyCode").dump() + (record.at("down") == true ? " down" : " up"));
      } else {
        const auto& fields = record.at("fields");
        events.push_back(fields.at("124").dump() + " phase " + fields.at("132").dump() +
                         (record.contains("payload") ? " augmented" : ""));
      }
    }
    return events;
  }

  std::optional<SpaceSwitcher> switcher{
      std::in_place, SpaceSwitcher::Services{bridge, desktop.accessibility(), desktop.events(), desktop.displays(),
                                             preferences, desktop.system(), time, time, settings, desktop.log()}};
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

std::string desktops(int count, std::string_view more = "") {
  auto spaces = PropertyList::array();
  for (int i = 1; i <= count; ++i) {
    spaces.push_back({{"ManagedSpaceID", i}});
  }
  const PropertyList list = {
      {{"Display Identifier", "Main"}, {"Current Space", {{"ManagedSpaceID", 1}}}, {"Spaces", spaces}}};
  return R"({"managedDisplaySpaces": )" + list.dump() + std::string(more) + "}";
}

TEST(SpaceSwitcher, TheActiveSpaceNeedsNothingNotEvenPermission) {
  SwitchingProgram program(R"({"permissions": {"accessibility": false}})");
  EXPECT_TRUE(program.switchTo(1));
  EXPECT_THAT(program.lines, IsEmpty());
  EXPECT_FALSE(program.switchTo(2));
  EXPECT_THAT(program.takeLog(), ElementsAre("accessibility not granted"));
}

TEST(SpaceSwitcher, ADisplayWithoutAnActiveSpaceCannotBeSwitched) {
  SwitchingProgram program(
      R"({"managedDisplaySpaces": [{"Display Identifier": "Main", "Spaces": [{"ManagedSpaceID": 1}]}]})");
  EXPECT_FALSE(program.switchTo(1));
  EXPECT_THAT(program.takeLog(), ElementsAre("target display or current space missing"));
}

TEST(SpaceSwitcher, NewerSystemsWantTheDevicesReportAndMindTheScrollingDirection) {
  struct Case {
    const char* natural;
    ManagedSpaceID target;
    const char* sign;
  };
  const Case cases[] = {{"1", 2, "1.0"},  {"0", 2, "-1.0"},     {"1", 4, "1.0"},   {"\"no\"", 2, "1.0"},
                        {"-3", 2, "1.0"}, {"false", 2, "-1.0"}, {"true", 2, "1.0"}};
  for (const auto& [natural, target, sign] : cases) {
    SwitchingProgram program(R"({"systemVersion": "27.0", "globalPreferences": {"com.apple.swipescrolldirection": )" +
                             std::string(natural) + "}}");
    EXPECT_TRUE(program.switchTo(target)) << natural;
    const auto posted = program.posted();
    EXPECT_EQ(posted.size(), 3U * static_cast<std::size_t>(target - 1)) << natural;
    EXPECT_EQ(posted.at(1), std::string(sign) + " phase 2 augmented") << natural;
    program.time.advance(1s);
    EXPECT_THAT(program.active(), ElementsAre(target)) << natural;
  }
}

TEST(SpaceSwitcher, AnOlderGestureIgnoresTheScrollingDirection) {
  SwitchingProgram program(R"({"systemVersion": "26.4", "globalPreferences": {"com.apple.swipescrolldirection": 0}})");
  EXPECT_TRUE(program.switchTo(2));
  EXPECT_THAT(program.posted(), ElementsAre("1.0 phase 1", "1.0 phase 4"));
  program.time.advance(1s);
  EXPECT_THAT(program.active(), ElementsAre(2));
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
  struct Case {
    ManagedSpaceID target;
    std::vector<std::string> keys;
  };
  const Case cases[] = {{2, {"19 down", "19 up"}}, {16, {"22 down", "22 up"}}};
  for (const auto& [target, keys] : cases) {
    SwitchingProgram program(desktops(18, R"(, "preferences": {"switchMode": "classic"})"));
    EXPECT_TRUE(program.switchTo(target));
    EXPECT_EQ(program.posted(), keys);
    program.time.advance(1s);
    EXPECT_THAT(program.active(), ElementsAre(target));
  }
  SwitchingProgram program(desktops(18, R"(, "preferences": {"switchMode": "classic"})"));
  EXPECT_TRUE(program.switchTo(17));
  EXPECT_EQ(program.posted().size(), 2U * 16U) << "desktop 17 has no hot key of its own";
  program.time.advance(1s);
  EXPECT_THAT(program.active(), ElementsAre(17));
}

TEST(SpaceSwitcher, AHeldMouseButtonMeansClassic) {
  SwitchingProgram program(R"({"pressedMouseButtons": 1})");
  EXPECT_TRUE(program.switchTo(2));
  EXPECT_THAT(program.posted(), ElementsAre("19 down", "19 up"));
}

constexpr auto disabledHotKeys = R"({"preferences": {"switchMode": "classic"}, "symbolicHotKeys": {
  "119": {"keyCode": 19, "modifiers": 262144, "enabled": false},
  "120": {"keyCode": 20, "modifiers": 262144, "enabled": false}, "121": null}})";

/// "119 on" and so on.
std::vector<std::string> toggled(SimulatedProgram& program) {
  std::vector<std::string> result;
  for (const auto& record : program.take("CGSSetSymbolicHotKeyEnabled")) {
    result.push_back(record.at("hotKey").dump() + (record.at("enabled") == true ? " on" : " off"));
  }
  return result;
}

TEST(SpaceSwitcher, AHotKeyThatIsOffIsOnUntil1500MillisecondsAfterTheLastPress) {
  SwitchingProgram program(disabledHotKeys);
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

TEST(SpaceSwitcher, APendingRestoreRunsBeforeTheEnd) {
  SwitchingProgram program(disabledHotKeys);
  EXPECT_TRUE(program.switchTo(2));
  static_cast<void>(toggled(program));
  program.switcher.reset();
  EXPECT_THAT(toggled(program), ElementsAre("119 off"));
  program.time.advance(3s);
  EXPECT_THAT(toggled(program), IsEmpty());
}

TEST(SpaceSwitcher, AHotKeyWithoutABindingCannotBePressed) {
  SwitchingProgram program(disabledHotKeys);
  EXPECT_FALSE(program.switchTo(4));
  EXPECT_THAT(program.takeLog(), ElementsAre("no key binding for symbolic hot key 121"));
}

TEST(SpaceSwitcher, AReturnThatIsLateOrNotSeenIsNoBounce) {
  SwitchingProgram program(R"({"dock": {"switchTime": 0.03, "bounces": {"count": 9, "after": 0.33}}})");
  for (int i = 0; i < 4; ++i) {
    EXPECT_TRUE(program.switchTo(2));
    program.time.advance(50ms);
    program.switcher->observe(program.snapshot());
    program.time.advance(310ms);  // back after 360 ms: somebody's wish
    EXPECT_THAT(program.active(), ElementsAre(1));
    program.switcher->observe(program.snapshot());
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
    const auto found = program.switcher->displayUnderMouse(program.snapshot());
    EXPECT_EQ(found ? std::optional(found->id) : std::nullopt, display) << pointer.x << ", " << pointer.y;
  }
  EXPECT_EQ(program.switcher->displayUnderMouse(SpaceSnapshot::empty()), std::nullopt);
  auto single = program.snapshot();
  ASSERT_EQ(single.displays.size(), 2U);
  single.displays.pop_back();
  EXPECT_EQ(program.switcher->displayUnderMouse(single)->id, single.displays.front().id) << "wherever the pointer is";
}

}  // namespace
}  // namespace tallowin
