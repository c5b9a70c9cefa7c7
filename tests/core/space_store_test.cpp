// What the user says about Spaces, kept on the simulated machine.

#include "core/space_store.h"

#include <gtest/gtest.h>

#include "base/json_text.h"
#include "core/space.h"
#include "tests/storing_program.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;

Space desktop(const std::string& id, std::int64_t number = 1) {
  Space space;
  space.id = id;
  space.desktopNumber = number;
  return space;
}

Space fullscreen(const std::string& id, std::optional<ProcessID> pid) {
  auto space = desktop(id);
  space.desktopNumber.reset();
  space.isFullscreen = true;
  space.fullscreenPID = pid;
  return space;
}

const auto file = supportFolder + "spaces.json";

/// A program with a store, on whose desktop Mail runs.
struct NamingProgram : StoringProgram {
  NamingProgram() : StoringProgram(R"({"applications": [{"pid": 5, "name": "Mail"}]})") {
    EXPECT_EQ(paths.supportDirectory() / "spaces.json", file);  // which makes the folder
  }

  [[nodiscard]] PropertyList saved() { return parseJSON(desktop.files().read(file).value_or("null")).value(); }
};

TEST(SpaceStore, EditsAreSavedOnceAndClearedRecordsDisappear) {
  NamingProgram program;
  auto& store = program.store;
  int told = 0;
  const auto observer = store.observeWillChange([&] { told += store.metas().contains("b") ? 0 : 1; });
  for (int i = 0; i < 9; ++i) {
    store.setName("Mail " + std::to_string(i), "a");
  }
  store.setNote("x", "b");
  EXPECT_EQ(told, 10) << "before each change";
  program.time.advance(299ms);
  EXPECT_TRUE(program.take("writeAtomically").empty());
  program.time.advance(1ms);
  EXPECT_EQ(program.take("writeAtomically").size(), 1U);
  EXPECT_EQ(program.saved(), PropertyList::parse(R"({"a": {"name": "Mail 8"}, "b": {"note": "x"}})"));

  store.setName("", "a");
  store.setSymbol("", "b");
  store.setAutomation({}, "c");
  SpaceAutomation automation;
  automation.launchApps = {"/x.app"};
  store.setAutomation(automation, "d");
  program.time.advance(300ms);
  EXPECT_EQ(program.saved(), PropertyList::parse(R"({"b": {"note": "x", "symbol": ""}, "d": {"automation":
    {"launchApps": ["/x.app"], "openURLs": [], "pinnedApps": [], "launchOnce": false, "launchOnlyIfEmpty": false,
     "hideOtherApps": false}}})"));
}

TEST(SpaceStore, TheFirstRuleThatGivesANameWins) {
  NamingProgram program;
  auto& store = program.store;
  const std::pair<Space, const char*> plain[] = {
      {desktop("a", 3), "Desktop 3"},
      {Space{}, "Desktop"},
      {fullscreen("f", 5), "Mail"},
      {fullscreen("f", 99), "Full Screen"},
      {fullscreen("f", std::nullopt), "Full Screen"},
  };
  for (const auto& [space, name] : plain) {
    EXPECT_EQ(store.displayName(space), name);
    EXPECT_FALSE(store.hasCustomName(space));
  }
  store.autoNameProvider = [](const Space& space) -> std::optional<std::string> {
    return space.id == "a" ? std::optional("Auto") : std::nullopt;
  };
  EXPECT_EQ(store.displayName(desktop("a")), "Desktop 1");
  program.preferences.setObject("autoNameSpaces", true);
  EXPECT_EQ(store.displayName(desktop("a")), "Auto");
  EXPECT_EQ(store.displayName(desktop("b", 2)), "Desktop 2");
  store.setName("Mine", "a");
  EXPECT_EQ(store.displayName(desktop("a")), "Mine");
  program.preferences.setObject("demoMode", true);
  EXPECT_EQ(store.displayName(desktop("a")), store.displayName(desktop("z", 7)));
  EXPECT_NE(store.displayName(desktop("a")), "Mine");
  EXPECT_TRUE(store.hasCustomName(desktop("b", 2)));
  EXPECT_EQ(store.displayName(fullscreen("f", 5)), "Mail") << "full-screen Spaces have no sample names";
}

TEST(SpaceStore, OnlyRecordsOfUUIDsAreDropped) {
  NamingProgram program;
  auto& store = program.store;
  for (const auto* id : {"gone", "kept", "managed-4", "fs:x"}) {
    store.setName("n", id);
  }
  program.time.advance(1000ms);
  static_cast<void>(program.take("writeAtomically"));
  store.prune({"kept"});
  store.prune({"kept"});
  program.time.advance(1000ms);
  EXPECT_EQ(program.take("writeAtomically").size(), 1U);
  EXPECT_EQ(program.saved().size(), 3U);
  EXPECT_FALSE(program.saved().contains("gone"));
}

}  // namespace
}  // namespace tallowin
