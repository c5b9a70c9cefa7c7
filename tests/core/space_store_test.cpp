// What the user says about Spaces, kept on the simulated machine; and where the user has been.

#include "core/space_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/json_text.h"
#include "core/space.h"
#include "tests/storing_program.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

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

/// A program with a store, whose desktop has two applications.
struct NamingProgram : StoringProgram {
  explicit NamingProgram(std::string_view more = "")
      : StoringProgram(R"({"applications": [{"pid": 5, "name": "Mail", "bundleID": "com.apple.mail"},
                                              {"pid": 6, "name": "Odd"}])" +
                       std::string(more) + "}") {
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

TEST(SpaceStore, ReadsWhatOtherVersionsWroteAndKeepsAsideWhatItCannotUnderstand) {
  NamingProgram other(R"(, "files": {"~/.local/share/Tallowin/spaces.json":
    "{\"a\": {\"name\": null, \"automation\": {\"scriptOnEnter\": \"true\"}, \"mood\": [1]}, \"b\": {}}"})");
  EXPECT_EQ(other.store.meta("a").automation->scriptOnEnter, "true");
  other.store.setName("Work", "a");
  other.time.advance(1000ms);
  EXPECT_EQ(other.saved()["a"]["mood"], PropertyList::parse("[1]")) << "what is not known survives";
  for (const auto* bad : {"[]", "{", R"({\"a\": 5})", R"({\"a\": {\"name\": 5}})",
                          R"({\"a\": {\"automation\": {\"launchApps\": [1]}}})", R"({\"a\": {\"automation\": []}})"}) {
    NamingProgram program(R"(, "files": {"~/.local/share/Tallowin/spaces.json": ")" + std::string(bad) + "\"}");
    EXPECT_TRUE(program.store.metas().empty()) << bad;
    program.store.setName("Mail", "a");
    program.time.advance(1000ms);
    EXPECT_EQ(program.saved(), PropertyList::parse(R"({"a": {"name": "Mail"}})"));
    EXPECT_TRUE(program.desktop.files().exists(file + ".unreadable-20260302T090000Z")) << bad;
  }
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

TEST(SpaceStore, AFullScreenSpaceTakesUpItsApplicationsMemory) {
  NamingProgram program;
  auto& store = program.store;
  const std::vector<Space> first = {fullscreen("one", 5), fullscreen("odd", 6), desktop("d")};
  store.noteFullscreenKeys(first);
  store.setName("Letters", "one");
  store.setName("Nobody's", "odd");
  EXPECT_EQ(store.meta("fs:com.apple.mail").name, "Letters");

  const std::vector<Space> second = {fullscreen("two", 5), fullscreen("odd2", 6)};
  store.noteFullscreenKeys(second);
  store.adoptFullscreenMemory(second);
  EXPECT_EQ(store.meta("two").name, "Letters");
  EXPECT_TRUE(store.meta("odd2").isEmpty()) << "an application without bundle identifier has no memory";
  store.setName("", "two");
  EXPECT_FALSE(store.metas().contains("fs:com.apple.mail")) << "the memory follows every edit";
  store.setName("Own", "two");
  store.noteFullscreenKeys(second);
  store.adoptFullscreenMemory(second);
  EXPECT_EQ(store.meta("two").name, "Own");
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

TEST(SpaceStore, RecentNamesAreTwentyAndDifferInMoreThanCase) {
  NamingProgram program;
  for (int i = 0; i < 25; ++i) {
    program.store.remember("Name " + std::to_string(i));
  }
  program.store.remember("NAME 10");
  const auto names = program.settings.get(setting::recentSpaceNames);
  EXPECT_EQ(names.size(), 20U);
  EXPECT_EQ(names.at(0), "NAME 10");
  EXPECT_EQ(names.at(1), "Name 24");
  EXPECT_EQ(std::ranges::count(names, "Name 10"), 0);
}

TEST(SpaceHistory, GoesBackToTheLatestOtherSpaceThatStillExists) {
  SpaceHistory history;
  SpaceSnapshot snapshot;
  snapshot.displays.push_back({"Main", {desktop("a"), desktop("b"), desktop("c")}, "a", true});
  EXPECT_EQ(history.previous(snapshot), std::nullopt);
  history.visit(desktop("a"));
  EXPECT_EQ(history.previous(snapshot), std::nullopt);
  for (const auto* id : {"b", "gone", "c", "b", "a"}) {
    history.visit(desktop(id));
  }
  EXPECT_THAT(history.recent(), ElementsAre("a", "b", "c", "gone"));
  EXPECT_EQ(history.previous(snapshot)->id, "b");
  snapshot.displays[0].activeSpaceID = "b";
  EXPECT_EQ(history.previous(snapshot)->id, "a");
  snapshot.displays[0].spaces = {desktop("c")};
  snapshot.displays[0].activeSpaceID.reset();
  EXPECT_EQ(history.previous(snapshot)->id, "c");
}

}  // namespace
}  // namespace tallowin
