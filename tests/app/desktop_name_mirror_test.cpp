#include <gmock/gmock.h>
#include <optional>

#include "core/space_changes.h"
#include "tests/storing_program.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// A program that watches, stores and mirrors names.
struct MirroringProgram : StoringProgram {
  using StoringProgram::StoringProgram;

  /// What was published since the last call, after everything that is due has run.
  std::vector<std::string> takePublished() {
    time.advance(0ms);
    std::vector<std::string> published;
    for (const auto& record : take("publishDesktopNames")) {
      published.push_back(record.at("names").dump());
    }
    return published;
  }

  SpaceChanges changes{services};
  DesktopNameMirror mirror{services, changes};
};

TEST(DesktopNameMirror, LeavesFullScreenSpacesAloneAndADegradedSystem) {
  MirroringProgram program(R"({"managedDisplaySpaces": [{"Display Identifier": "Main", "Spaces": [
      {"ManagedSpaceID": 1, "uuid": "A", "type": 0}, {"ManagedSpaceID": 2, "uuid": "B", "type": 4}]}],
    "script": [{"at": 1, "do": "setManagedDisplaySpaces", "list": null}]})");
  program.watcher.start();
  program.store.setName("Film", "B");
  EXPECT_THAT(program.takePublished(), IsEmpty());
  program.store.setName("Home", "A");
  EXPECT_THAT(program.takePublished(), ElementsAre(R"({"1":"Home"})"));
  program.time.advance(2s);
  program.store.setName("Away", "A");
  EXPECT_FALSE(program.spaces.health().healthy());
  EXPECT_THAT(program.takePublished(), IsEmpty());
}

}  // namespace
}  // namespace tallowin
