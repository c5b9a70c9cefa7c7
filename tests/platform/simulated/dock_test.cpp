// Gestures that are no gestures to the Dock, as posted events.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/simulated_program.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

class SimulatedDockTest : public testing::Test {
 protected:
  /// A horizontal Dock swipe in one phase (1 began, 2 changed, 4 ended), with a device report behind it.
  void postSwipe(std::int64_t phase, double progress, const std::string& report = "") {
    const auto event = events.CGEventCreate();
    for (const auto& [field, value] : {std::pair<CGEventField, std::int64_t>{55, 30}, {110, 23}, {123, 1}}) {
      events.CGEventSetIntegerValueField(*event, field, value);
    }
    events.CGEventSetDoubleValueField(*event, 124, progress);
    events.CGEventSetIntegerValueField(*event, 132, phase);
    events.CGEventPost(CGEventTap::session, *events.CGEventCreateFromData(events.CGEventCreateData(*event) + report));
  }

  SimulatedProgram program{"{}"};
  Events& events = program.desktop.events();
};

TEST_F(SimulatedDockTest, gesturesThatAreIncompleteOrMalformedDoNothing) {
  postSwipe(4, 1);
  postSwipe(1, 1);
  postSwipe(4, -1);
  postSwipe(1, 1);
  postSwipe(2, 1);
  postSwipe(4, 1, std::string(96, '\x01'));
  program.time.advance(1s);
  EXPECT_EQ(program.state().spaces.activeOn("Main"), 1);
  EXPECT_THAT(program.takeLog(), ElementsAre("ignored a malformed gesture: it did not begin",
                                             "ignored a malformed gesture: it did not begin",
                                             "ignored a malformed gesture: its device report is wrong at byte 8"));
}

}  // namespace
}  // namespace tallowin
