// The Dock's gestures and keys, as posted events, on a desktop of two displays whose switches take 10 ms.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/simulated_program.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

// display Left: [1] 2 (full screen 9) 3      display Right: [5] 6
constexpr auto twoDisplays = R"({"dock": {"switchTime": 0.01}, "pointer": [50, 50],
  "displays": [{"id": 1, "uuid": "Left", "bounds": [0, 0, 100, 100]},
               {"id": 2, "uuid": "Right", "bounds": [100, 0, 100, 100]}],
  "managedDisplaySpaces": [
    {"Display Identifier": "Left", "Current Space": {"ManagedSpaceID": 1}, "Spaces": [
      {"ManagedSpaceID": 1}, {"ManagedSpaceID": 2}, {"ManagedSpaceID": 9, "type": 4}, {"ManagedSpaceID": 3}]},
    {"Display Identifier": "Right", "Current Space": {"ManagedSpaceID": 5}, "Spaces": [
      {"ManagedSpaceID": 5}, {"ManagedSpaceID": 6}]}]})";

class SimulatedDockTest : public testing::Test {
 protected:
  /// A horizontal Dock swipe in one phase (1 began, 2 changed, 4 ended).
  void postSwipe(std::int64_t phase, double progress, const std::string& report = "") {
    const auto event = events.CGEventCreate();
    for (const auto& [field, value] : {std::pair<CGEventField, std::int64_t>{55, 30}, {110, 23}, {123, 1}}) {
      events.CGEventSetIntegerValueField(*event, field, value);
    }
    events.CGEventSetDoubleValueField(*event, 124, progress);
    events.CGEventSetIntegerValueField(*event, 132, phase);
    events.CGEventPost(CGEventTap::session, *events.CGEventCreateFromData(events.CGEventCreateData(*event) + report));
  }

  void swipe(double progress) {
    for (const std::int64_t phase : {1, 2, 4}) {
      postSwipe(phase, progress);
    }
  }

  /// The Spaces that have been reached within this time.
  std::vector<ManagedSpaceID> reached(Duration within = 1s) {
    program.time.advance(within);
    std::vector<ManagedSpaceID> spaces;
    for (const auto& record : program.take("activeSpace")) {
      spaces.push_back(record.at("space"));
    }
    return spaces;
  }

  SimulatedProgram program{twoDisplays};
  Events& events = program.desktop.events();
};

TEST_F(SimulatedDockTest, aSwipeStepsOncePerGestureAcrossAllSpacesOfTheDisplayUnderThePointer) {
  swipe(1);
  EXPECT_THAT(reached(), ElementsAre(2));
  swipe(0.1);
  EXPECT_THAT(reached(), ElementsAre(9)) << "full-screen Spaces count";
  swipe(-30);
  EXPECT_THAT(reached(), ElementsAre(2));
  program.state().pointer = {150, 50};
  swipe(1);
  EXPECT_THAT(reached(), ElementsAre(6));
  program.state().pointer = {500, 50};
  swipe(-1);
  EXPECT_THAT(reached(), IsEmpty());
}

TEST_F(SimulatedDockTest, aBurstIsOneSwitchAndStaysWithinTheEnds) {
  for (const double progress : {1, 1, -1, 1}) {
    swipe(progress);
  }
  EXPECT_THAT(reached(), ElementsAre(9));
  for (int i = 0; i < 10; ++i) {
    swipe(1);
  }
  EXPECT_THAT(reached(), ElementsAre(3));
  swipe(1);
  EXPECT_THAT(reached(), IsEmpty()) << "nothing lies beyond the last";
}

TEST_F(SimulatedDockTest, stepsCountFromWhereTheDisplayIsHeading) {
  swipe(1);
  EXPECT_THAT(reached(5ms), IsEmpty());
  swipe(1);
  EXPECT_THAT(reached(), ElementsAre(9)) << "the first switch had not arrived";
}

TEST_F(SimulatedDockTest, gesturesThatAreIncompleteOrMalformedDoNothing) {
  postSwipe(4, 1);
  postSwipe(1, 1);
  postSwipe(4, -1);
  postSwipe(1, 1);
  postSwipe(2, 1);
  postSwipe(4, 1, std::string(96, '\x01'));
  program.time.advance(1s);
  EXPECT_EQ(program.state().spaces.activeOn("Left"), 1);
  EXPECT_THAT(program.takeLog(), ElementsAre("ignored a malformed gesture: it did not begin",
                                             "ignored a malformed gesture: it did not begin",
                                             "ignored a malformed gesture: its device report is wrong at byte 8"));
}

}  // namespace
}  // namespace tallowin
