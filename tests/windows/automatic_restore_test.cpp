#include "windows/automatic_restore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/windows/windows_program.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;

TEST(ReconnectRestore, SleepingDisplaysAreNoChange) {
  WindowsProgram program(R"({"displays": [{"id": 1, "uuid": "Lid", "bounds": [0, 0, 800, 600], "builtin": true},
                                          {"id": 2, "uuid": "Desk", "bounds": [800, 0, 800, 600]}],
    "managedDisplaySpaces": [
      {"Display Identifier": "Lid", "Current Space": {"ManagedSpaceID": 1}, "Spaces": [{"ManagedSpaceID": 1}]},
      {"Display Identifier": "Desk", "Current Space": {"ManagedSpaceID": 2}, "Spaces": [{"ManagedSpaceID": 2}]}],
    "applications": [{"name": "A", "pid": 11, "bundleID": "app.a"}],
    "windows": [{"number": 21, "pid": 11, "space": 2}]})");
  ReconnectRestore reconnect{program.services, program.contents, *program.layouts};
  reconnect.look();
  program.layouts->save("auto", program.snapshot());
  program.state().window(21)->spaces = {1};
  const auto displays = std::exchange(program.state().displays, {});
  const auto list = std::exchange(program.state().spaces, RawSpaces(PropertyList::array()));
  reconnect.look();
  program.time.advance(1h);
  program.state().displays = displays;
  program.state().spaces = list;
  reconnect.look();
  program.time.advance(1h);
  EXPECT_THAT(program.spacesOf(21), testing::ElementsAre(1));
}

}  // namespace
}  // namespace tallowin
