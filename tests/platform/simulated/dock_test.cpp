#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/simulated/simulated_dock.h"
#include "platform/simulated/virtual_time.h"
#include "tests/lines_log.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// Desktops that remember what they were asked for; switches arrive only when the test says so.
class FakeDesktops : public DesktopOperations {
 public:
  std::vector<DesktopDisplay> displays() override { return all; }
  std::optional<std::string> displayUnderPointer() override {
    return pointed && *pointed < all.size() ? std::optional(all[*pointed].id) : std::nullopt;
  }
  void switchTo(ManagedSpaceID space, SwitchCause /*cause*/) override { switched.push_back(space); }
  bool addDesktop(const std::string& /*display*/) override { return false; }
  bool removeDesktop(ManagedSpaceID /*space*/) override { return false; }

  // display Left: [1] 2 (full screen 9) 3      display Right: [5] 6
  static DesktopSpace space(ManagedSpaceID id, bool isFullscreen = false) { return {id, "", 0, isFullscreen, {}}; }
  std::vector<DesktopDisplay> all = {{"Left", {space(1), space(2), space(9, true), space(3)}, 1},
                                     {"Right", {space(5), space(6)}, 5}};
  std::optional<std::size_t> pointed = 0;
  std::vector<ManagedSpaceID> switched;
};

/// A horizontal Dock swipe in one phase (1 began, 2 changed, 4 ended).
SimulatedEvent swipeEvent(std::int64_t phase, double progress) {
  SimulatedEvent event;
  event.fields = {{55, std::int64_t{30}},
                  {110, std::int64_t{23}},
                  {123, std::int64_t{1}},
                  {124, progress},
                  {125, 0.5},
                  {126, -0.25},
                  {129, 1.5},
                  {132, phase}};
  return event;
}

void putLittleEndian(std::string& bytes, std::uint64_t value, std::size_t width) {
  for (std::size_t i = 0; i < width; ++i) {
    bytes += static_cast<char>(static_cast<unsigned char>(value >> (8 * i)));
  }
}

/// 16.16 fixed point, cut off toward zero.
std::uint64_t fixedPoint(double value) {
  return static_cast<std::uint32_t>(static_cast<std::int32_t>(std::trunc(value * 65536)));
}

/// The device's report that goes with swipeEvent(): 96 bytes.
std::string swipeReport(std::int64_t phase, double progress) {
  struct Number {
    std::uint64_t value;
    std::size_t width;
  };
  const Number numbers[] = {{123456789, 8},
                            {0, 8},
                            {0, 8},
                            {2, 4},
                            {40, 4},
                            {23, 4},
                            {static_cast<std::uint64_t>(phase) << 24, 4},
                            {0, 4},
                            {fixedPoint(0.5), 4},
                            {fixedPoint(-0.25), 4},
                            {0, 8},
                            {0x30001, 4},
                            {fixedPoint(-progress), 4},
                            {28, 4},
                            {9, 4},
                            {0, 4},
                            {1, 4},
                            {fixedPoint(-1.5), 4},
                            {0, 4},
                            {0, 4}};
  std::string report;
  for (const auto& [value, width] : numbers) {
    putLittleEndian(report, value, width);
  }
  return report;
}

SimulatedEvent augmentedSwipeEvent(std::int64_t phase, double progress) {
  auto event = swipeEvent(phase, progress);
  event.payload = swipeReport(phase, progress);
  return event;
}

class SimulatedDockTest : public testing::Test {
 protected:
  void swipe(double progress) {
    for (const std::int64_t phase : {1, 2, 4}) {
      EXPECT_TRUE(dock.handle(swipeEvent(phase, progress)));
    }
  }

  bool key(VirtualKeyCode keyCode, std::uint64_t flags, bool down = true) {
    SimulatedEvent event;
    event.flags = flags;
    event.fields = {{55, down ? SimulatedEvent::keyDown : SimulatedEvent::keyUp}, {9, std::int64_t{keyCode}}};
    return dock.handle(event);
  }

  /// The switch that was asked for last has taken place.
  void arrive() {
    for (auto& row : desktops.all) {
      if (std::ranges::find(row.spaces, desktops.switched.back(), &DesktopSpace::id) != row.spaces.end()) {
        row.current = desktops.switched.back();
        dock.activeSpaceChanged(row.id);
      }
    }
  }

  VirtualTime time;
  FakeDesktops desktops;
  SymbolicHotKeys hotKeys;
  LinesLog log;
  SimulatedDock dock{desktops, hotKeys, time, time, log, {}};
};

TEST_F(SimulatedDockTest, aSwipeStepsOncePerGestureAcrossAllSpaces) {
  swipe(1);
  EXPECT_THAT(desktops.switched, IsEmpty()) << "the switch comes after the burst";
  time.advance(0ms);
  EXPECT_THAT(desktops.switched, ElementsAre(2));
  arrive();
  swipe(0.1);
  time.advance(0ms);
  EXPECT_THAT(desktops.switched, ElementsAre(2, 9)) << "full-screen Spaces count";
  arrive();
  swipe(-30);
  time.advance(0ms);
  EXPECT_THAT(desktops.switched, ElementsAre(2, 9, 2));
  desktops.pointed = 1;
  swipe(1);
  time.advance(0ms);
  EXPECT_EQ(desktops.switched.back(), 6) << "the display under the pointer steps";
  desktops.pointed.reset();
  swipe(1);
  time.advance(0ms);
  EXPECT_EQ(desktops.switched.size(), 4U);
}

TEST_F(SimulatedDockTest, aBurstIsOneSwitchAndStaysWithinTheEnds) {
  swipe(1);
  swipe(1);
  swipe(-1);
  swipe(1);
  time.advance(0ms);
  EXPECT_THAT(desktops.switched, ElementsAre(9));
  arrive();
  for (int i = 0; i < 10; ++i) {
    swipe(1);
  }
  time.advance(0ms);
  EXPECT_THAT(desktops.switched, ElementsAre(9, 3));
  arrive();
  swipe(1);
  time.advance(0ms);
  EXPECT_EQ(desktops.switched.size(), 2U) << "nothing lies beyond the last";
}

TEST_F(SimulatedDockTest, stepsCountFromWhereTheDisplayIsHeading) {
  swipe(1);
  time.advance(0ms);
  swipe(1);
  time.advance(0ms);
  EXPECT_THAT(desktops.switched, ElementsAre(2, 9)) << "the first switch has not arrived yet";
  // The switch never arrives; after a second the Dock no longer waits for it.
  time.advance(1001ms);
  swipe(1);
  time.advance(0ms);
  EXPECT_THAT(desktops.switched, ElementsAre(2, 9, 2));
}

TEST_F(SimulatedDockTest, gesturesThatAreIncompleteOrMalformedDoNothing) {
  EXPECT_TRUE(dock.handle(swipeEvent(4, 1))) << "it is taken nevertheless";
  dock.handle(swipeEvent(1, 1));
  dock.handle(swipeEvent(4, -1));
  dock.handle(swipeEvent(1, 1));
  dock.handle(swipeEvent(2, 1));
  auto malformed = augmentedSwipeEvent(4, 1);
  malformed.payload[30] = 1;
  dock.handle(malformed);
  time.advance(1s);
  EXPECT_THAT(desktops.switched, IsEmpty());
  EXPECT_THAT(log.lines, ElementsAre("ignored a malformed gesture: it did not begin",
                                     "ignored a malformed gesture: it did not begin",
                                     "ignored a malformed gesture: its device report is wrong at byte 28"));
}

TEST_F(SimulatedDockTest, onlyEnabledHotKeysWithTheirModifiersAreTakenTogetherWithTheirReleases) {
  constexpr VirtualKeyCode digit1 = 18;
  EXPECT_FALSE(key(digit1, 0));
  EXPECT_FALSE(key(digit1, CGEventFlag::control | CGEventFlag::shift));
  EXPECT_FALSE(key(digit1, CGEventFlag::control, false)) << "a release without a press";
  EXPECT_TRUE(key(digit1, CGEventFlag::control | 0x10000)) << "CapsLock is no matter";
  EXPECT_TRUE(key(digit1, 0, false)) << "the modifiers may have been released first";
  EXPECT_FALSE(key(digit1, 0, false)) << "once";
  hotKeys.setEnabled(symbolic_hot_key::firstDesktop, false);
  EXPECT_FALSE(key(digit1, CGEventFlag::control));
  hotKeys.setEnabled(symbolic_hot_key::firstDesktop, true);
  hotKeys.bind(symbolic_hot_key::firstDesktop, std::nullopt);
  EXPECT_FALSE(key(digit1, CGEventFlag::control));
  EXPECT_FALSE(hotKeys.setEnabled(7, true));
}

TEST_F(SimulatedDockTest, aDirectSwitchPutsAnEndToPendingSteps) {
  swipe(1);
  key(20, CGEventFlag::control);
  time.advance(1s);
  EXPECT_THAT(desktops.switched, ElementsAre(3));
}

}  // namespace
}  // namespace tallowin
