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

TEST(DesktopNameMirror, PublishesTheUsersNamesOfTheSpacesThatExist) {
  MirroringProgram program(R"({"script": [{"at": 1, "do": "removeSpace", "space": 2},
                                          {"at": 2, "do": "switchSpace", "space": 3}]})");
  auto& store = program.store;
  const auto second = program.id(2);
  const auto third = program.id(3);
  store.autoNameProvider = [](const Space&) { return "Automatic"; };
  store.setName("Mail", second);
  EXPECT_THAT(program.takePublished(), IsEmpty()) << "nothing is known of the Spaces yet";
  program.watcher.start();
  EXPECT_THAT(program.takePublished(), ElementsAre(R"({"2":"Mail"})"));

  store.setName("Post", second);
  store.setName("Web", third);
  store.setName("Nowhere", "managed-99");
  EXPECT_THAT(program.takePublished(), ElementsAre(R"({"2":"Post","3":"Web"})")) << "once for the three";
  store.setNote("by the window", third);
  EXPECT_THAT(program.takePublished(), IsEmpty());

  program.time.advance(1s + 100ms);
  EXPECT_THAT(program.takePublished(), ElementsAre(R"({"3":"Web"})")) << "Space 2 has gone";
  program.time.advance(1s);
  EXPECT_THAT(program.takePublished(), IsEmpty()) << "a switch changes no name";
  store.setName("", third);
  EXPECT_THAT(program.takePublished(), ElementsAre("{}"));
}

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
