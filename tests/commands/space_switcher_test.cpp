// Switching on a simulated desktop, whose Dock understands gestures and hot keys as the real one does.

#include "commands/space_switcher.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

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
  bool switchTo(ManagedSpaceID managedID) { return switcher->switchTo(spaceNumbered(managedID), snapshot()); }

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

  std::optional<SpaceSwitcher> switcher{std::in_place, SwitchServices{platform, settings}};
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

TEST(SpaceSwitcher, NewerSystemsWantTheDevicesReportAndMindTheScrollingDirection) {
  struct Case {
    const char* natural;
    ManagedSpaceID target;
    const char* event;
    std::string version = "27.0";
  };
  const Case cases[] = {
      {"1", 2, "1.0 phase 2 augmented"},      {"0", 2, "-1.0 phase 2 augmented"},
      {"1", 4, "1.0 phase 2 augmented"},      {"-3", 2, "1.0 phase 2 augmented"},
      {"\"no\"", 2, "1.0 phase 2 augmented"}, {"false", 2, "-1.0 phase 2 augmented"},
      {"true", 2, "1.0 phase 2 augmented"},   {"0", 2, "1.0 phase 4", "26.4"}};  // an older one ignores the direction
  for (const auto& [natural, target, event, version] : cases) {
    SwitchingProgram program(R"({"systemVersion": ")" + version +
                             R"(", "globalPreferences": {"com.apple.swipescrolldirection": )" + natural + "}}");
    EXPECT_TRUE(program.switchTo(target)) << natural;
    const auto posted = program.posted();
    EXPECT_EQ(posted.size(), (version == "27.0" ? 3U : 2U) * static_cast<std::size_t>(target - 1)) << natural;
    EXPECT_EQ(posted.at(1), event) << natural;
    program.time.advance(1s);
    EXPECT_THAT(program.active(), ElementsAre(target)) << natural;
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
  struct Case {
    ManagedSpaceID target;
    std::size_t events;
    const char* key;
  };
  // Desktop 17 has no hot key of its own.
  for (const auto& [target, events, key] : {Case{2, 2, "19 down"}, {16, 2, "22 down"}, {17, 32, "124 down"}}) {
    SwitchingProgram program(desktops(18, R"(, "preferences": {"switchMode": "classic"})"));
    EXPECT_TRUE(program.switchTo(target));
    const auto posted = program.posted();
    ASSERT_EQ(posted.size(), events);
    EXPECT_EQ(posted.front(), key);
    program.time.advance(1s);
    EXPECT_THAT(program.active(), ElementsAre(target));
  }
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
  EXPECT_FALSE(program.switchTo(4));
  EXPECT_THAT(program.takeLog(), ElementsAre("no key binding for symbolic hot key 121"));
  EXPECT_TRUE(program.switchTo(2));
  static_cast<void>(toggled(program));
  program.switcher.reset();
  EXPECT_THAT(toggled(program), ElementsAre("119 off"));
  program.time.advance(3s);
  EXPECT_THAT(toggled(program), IsEmpty());
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
