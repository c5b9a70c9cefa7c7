#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/simulated/simulated_dock.h"
#include "platform/simulated/virtual_time.h"
#include "tests/platform/simulated/fake_desktops.h"
#include "tests/platform/simulated/swipe_events.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr VirtualKeyCode leftArrow = 123;
constexpr VirtualKeyCode rightArrow = 124;

class SimulatedDockTest : public testing::Test {
 protected:
  void swipe(double progress, bool augmented = false) {
    for (const std::int64_t phase : {1, 2, 4}) {
      EXPECT_TRUE(dock.handle(augmented ? augmentedSwipeEvent(phase, progress) : swipeEvent(phase, progress)));
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
    for (auto& row : desktops.displays) {
      if (std::ranges::find(row.spaces, desktops.switched.back(), &DockSpace::id) != row.spaces.end()) {
        row.active = desktops.switched.back();
        dock.activeSpaceChanged(row.display);
      }
    }
  }

  VirtualTime time;
  FakeDesktops desktops;
  SymbolicHotKeys hotKeys;
  LinesLog log;
  bool naturalScrolling = true;
  SimulatedDock dock{desktops, hotKeys, time, time, log, behaviour()};

  DockBehaviour behaviour() {
    DockBehaviour behaviour;
    behaviour.naturalScrolling = [this] { return naturalScrolling; };
    return behaviour;
  }
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

TEST_F(SimulatedDockTest, aNewerDockRefusesPlainSwipes) {
  auto newerBehaviour = behaviour();
  newerBehaviour.requiresAugmentedSwipes = true;
  SimulatedDock newer(desktops, hotKeys, time, time, log, newerBehaviour);
  for (const bool augmented : {false, true}) {
    for (const std::int64_t phase : {1, 2, 4}) {
      EXPECT_TRUE(newer.handle(augmented ? augmentedSwipeEvent(phase, 1) : swipeEvent(phase, 1)));
    }
    time.advance(0ms);
    EXPECT_EQ(desktops.switched.size(), augmented ? 1U : 0U);
  }
}

TEST_F(SimulatedDockTest, arrowsStepAndDigitsGoToOrdinaryDesktopsOfAllDisplays) {
  struct Case {
    VirtualKeyCode key;
    std::uint64_t flags;
    ManagedSpaceID space;
  };
  constexpr auto control = CGEventFlag::control;
  const Case cases[] = {
      {rightArrow, control, 2}, {leftArrow, control, 1},  // arrows
      {20, control, 3},                                   // Desktop 3 stands behind the full-screen Space
      {21, control, 5},                                   // Desktop 4 is the other display's first, and active there
      {23, control, 6},         {19, control, 2},
  };
  for (const auto& [keyCode, flags, space] : cases) {
    const auto before = desktops.switched.size();
    EXPECT_TRUE(key(keyCode, flags));
    EXPECT_TRUE(key(keyCode, flags, false));
    time.advance(0ms);
    if (space == 5) {
      EXPECT_EQ(desktops.switched.size(), before) << "it is active already";
      continue;
    }
    ASSERT_EQ(desktops.switched.size(), before + 1) << space;
    EXPECT_EQ(desktops.switched.back(), space);
    EXPECT_EQ(desktops.causes.back(), SwitchCause::hotKey);
    arrive();
  }
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
