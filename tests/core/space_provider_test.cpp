// What is read from the window server's list of Spaces, and which signs are followed when.

#include "core/space_provider.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unordered_set>

#include "core/space_watcher.h"
#include "tests/simulated_program.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

std::optional<std::vector<DisplaySpaces>> read(const char* json, const std::string& menuBar = "Main") {
  auto displays = readDisplays(PropertyList::parse(json), menuBar);
  return displays ? std::optional(SpaceProvider::displays({*std::move(displays)})) : std::nullopt;
}

/// One line for each Space: "id number@index", with "f" and the pid for full-screen ones and "*" for active ones.
std::vector<std::string> lines(const std::vector<DisplaySpaces>& displays) {
  std::vector<std::string> result;
  for (const auto& display : displays) {
    for (const auto& space : display.spaces) {
      result.push_back((space.isActive ? "*" : "") + space.id + " " +
                       (space.desktopNumber ? std::to_string(*space.desktopNumber) : "-") + "@" +
                       std::to_string(space.indexOnDisplay) + (space.isFullscreen ? " f" : "") +
                       (space.fullscreenPID ? std::to_string(*space.fullscreenPID) : ""));
    }
  }
  return result;
}

TEST(SpaceProvider, DesktopNumbersRunAcrossDisplaysAndPassOverFullScreenSpaces) {
  const auto displays = read(R"([
    {"Display Identifier": "A", "Current Space": {"ManagedSpaceID": 4}, "Spaces": [
      {"ManagedSpaceID": 1, "uuid": "u1", "type": 0}, {"ManagedSpaceID": 2, "uuid": "u2"},
      {"ManagedSpaceID": 4, "uuid": "u4", "type": 4, "pid": 77}, {"ManagedSpaceID": 3, "uuid": "u3"}]},
    {"Display Identifier": "B", "Current Space": {"ManagedSpaceID": 5}, "Spaces": [
      {"ManagedSpaceID": 5, "uuid": "u5"}, {"ManagedSpaceID": 6, "uuid": "u6"}]}])",
                             "B");
  ASSERT_TRUE(displays);
  EXPECT_THAT(lines(*displays), ElementsAre("u1 1@0", "u2 2@1", "*u4 -@2 f77", "u3 3@3", "*u5 4@0", "u6 5@1"));
  EXPECT_EQ(displays->at(0).activeSpaceID, "u4");
  EXPECT_FALSE(displays->at(0).isMenuBarDisplay);
  EXPECT_TRUE(displays->at(1).isMenuBarDisplay);
  const auto doubled = read(R"([{"Display Identifier": "A", "Current Space": {"ManagedSpaceID": 1}, "Spaces": [
      {"ManagedSpaceID": 1, "uuid": "x"}, {"ManagedSpaceID": 1, "uuid": "y"}]}])");
  EXPECT_THAT(lines(*doubled), ElementsAre("*x 1@0", "*y 2@1"));
  EXPECT_EQ(doubled->front().activeSpaceID, "y") << "the later one counts";
  const SpaceSnapshot snapshot{*displays, Date()};
  const SpaceSnapshot later{*displays, Date() + 1s};
  EXPECT_EQ((std::unordered_set<SpaceSnapshot>{snapshot, later, snapshot}).size(), 2U);
}

TEST(SpaceProvider, MalformedEntriesAreLeftOutAndTheRestIsUsed) {
  struct Case {
    const char* why;
    const char* spaces;
    std::vector<std::string> expected;
  };
  const Case cases[] = {
      {"no or empty uuid",
       R"([{"ManagedSpaceID": 7}, {"ManagedSpaceID": 8, "uuid": ""}, {"ManagedSpaceID": 9, "uuid": 5}])",
       {"managed-7 1@0", "managed-8 2@1", "managed-9 3@2"}},
      {"no managed id, or none that is an integer",
       R"([{"ManagedSpaceID": 1}, {"uuid": "x"}, {"ManagedSpaceID": "2"}, {"ManagedSpaceID": 3.0}, {"ManagedSpaceID": true},
           {}, {"ManagedSpaceID": 2}])",
       {"managed-1 1@0", "managed-2 2@6"}},
      {"a managed id beyond 64 bits",
       R"([{"ManagedSpaceID": 18446744073709551615}, {"ManagedSpaceID": -5}])",
       {"managed--5 1@1"}},
      {"tiled Spaces are full-screen whatever their type",
       R"([{"ManagedSpaceID": 1, "type": 0, "TileLayoutManager": {}, "pid": 5}])",
       {"managed-1 -@0 f5"}},
      {"tiles that are no dictionary, a type that is no integer",
       R"([{"ManagedSpaceID": 1, "TileLayoutManager": [], "type": "4", "pid": 5}, {"ManagedSpaceID": 2, "type": 4.0}])",
       {"managed-1 1@0", "managed-2 2@1"}},
      {"a pid beyond 32 bits", R"([{"ManagedSpaceID": 1, "type": 4, "pid": 4294967296}])", {"managed-1 -@0 f"}},
      {"no Spaces at all", "[]", {}},
  };
  for (const auto& [why, spaces, expected] : cases) {
    const auto json = R"([{"Display Identifier": "Main", "Spaces": )" + std::string(spaces) + "}]";
    const auto displays = read(json.c_str());
    ASSERT_TRUE(displays) << why;
    ASSERT_EQ(displays->size(), 1U) << why;
    EXPECT_EQ(lines(*displays), expected) << why;
    EXPECT_EQ(displays->front().activeSpaceID, std::nullopt) << why;
    EXPECT_TRUE(displays->front().isMenuBarDisplay) << why;
  }
}

TEST(SpaceProvider, DisplaysWithoutTheirRequiredPartsAreLeftOut) {
  const auto displays =
      read(R"([{}, {"Display Identifier": "A"}, {"Spaces": []}, {"Display Identifier": 3, "Spaces": []},
    {"Display Identifier": "B", "Spaces": [{"ManagedSpaceID": 1}, 5]}, {"Display Identifier": "C", "Spaces": {}},
    {"Display Identifier": "D", "Spaces": [], "Current Space": []}])");
  ASSERT_TRUE(displays);
  ASSERT_EQ(displays->size(), 1U);
  EXPECT_EQ(displays->front().id, "D");
  for (const auto* json :
       {"null", "{}", "7", "\"x\"", "[5]", "[{\"Display Identifier\": \"A\", \"Spaces\": []}, null]"}) {
    EXPECT_EQ(read(json), std::nullopt) << json;
  }
  EXPECT_TRUE(read("[]")->empty());
}

/// A desktop that can be told what it is, and gives signs.
class SigningDesktop : public Desktop {
 public:
  std::optional<DesktopReading> read() override {
    ++readings;
    return now;
  }
  std::optional<ManagedSpaceID> activeSpace() override { return now.displays.front().current; }
  CGSBridgeHealth health() override { return {}; }
  bool observe(std::function<void(const DesktopSign&)> observer) override {
    sign = std::move(observer);
    return true;
  }
  std::optional<std::vector<ManagedSpaceID>> spacesOfWindow(WindowNumber /*window*/) override { return {}; }
  bool moveWindow(WindowNumber /*window*/, ManagedSpaceID /*space*/) override { return false; }

  static DesktopSpace space(ManagedSpaceID id) { return {id, "", id - 1, false, std::nullopt}; }

  DesktopReading now{{{"Main", {space(1), space(2), space(3)}, 1, true}}, 7};
  std::function<void(const DesktopSign&)> sign;
  int readings = 0;
};

TEST(SpaceWatcher, AnExactSignIsFollowedAtOnceUnlessItsChangeMayNotLast) {
  struct Case {
    const char* why;
    void (*change)(DesktopReading&);
    bool isExact = true;
    const char* setting = nullptr;
    bool atOnce = false;
  };
  const auto to2 = [](DesktopReading& now) { now.displays.front().current = 2; };
  const Case cases[] = {
      {"an exact sign", to2, true, nullptr, true},
      {"an uncertain sign", to2, false},
      {"the lock judges by what comes next", to2, true, "spaceLock"},
      {"so does the Dock guard", to2, true, "dockClickProtection"},
      {"another window manager",
       [](DesktopReading& now) {
         now.displays.front().current = 2;
         now.manager = 8;
       }},
      {"a Space is gone, and the current one with it",
       [](DesktopReading& now) {
         now.displays.front().spaces.pop_back();
         now.displays.front().current = 3;
       }},
      {"a Space is gone",
       [](DesktopReading& now) {
         now.displays.front().spaces.pop_back();
         now.displays.front().current = 2;
       }},
      {"no current Space", [](DesktopReading& now) { now.displays.front().current.reset(); }},
      {"a display more",
       [](DesktopReading& now) { now.displays.push_back({"Other", {SigningDesktop::space(4)}, 4, false}); }},
  };
  for (const auto& [why, change, isExact, setting, atOnce] : cases) {
    SimulatedProgram program("{}");
    if (setting != nullptr) {
      program.preferences.setObject(setting, true);
    }
    SigningDesktop desktop;
    const SpaceProvider provider(desktop, program.time, program.desktop.log());
    SpaceWatcher watcher({provider, desktop, DesktopKind::asked, program.desktop.workspaceNotifications(),
                          program.desktop.defaultNotifications(), program.desktop.files(), program.desktop.folders(),
                          program.settings, program.time, program.desktop.log()});
    int told = 0;
    watcher.onSnapshot = [&told](const SpaceSnapshot&) { ++told; };
    watcher.start();
    change(desktop.now);
    for (int i = 0; i < 5; ++i) {
      desktop.sign({"moved", isExact});
    }
    program.time.advance(39ms);
    EXPECT_EQ(told, atOnce ? 2 : 1) << why;
    EXPECT_LE(desktop.readings, 2) << why << ": one reading for all signs of a turn";
    program.time.advance(1ms);
    EXPECT_EQ(told, 2) << why;
    desktop.sign({"nothing new", true});
    program.time.advance(1s);
    EXPECT_EQ(told, 2) << why;
  }
}

}  // namespace
}  // namespace tallowin
