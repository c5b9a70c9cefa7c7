// What the program tells others: the export, the diagnostics report and the state file.

#include "automation/settings_transfer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "automation/state_exporter.h"
#include "base/json_text.h"
#include "tests/automation/automation_program.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;

struct TransferProgram : AutomationProgram {
  explicit TransferProgram(std::string_view scenarioJSON = R"({"start": "2026-03-02T09:00:00Z"})")
      : AutomationProgram(scenarioJSON) {}

  [[nodiscard]] PropertyList exported() const { return PropertyList::parse(transfer.exportData(store)); }
  /// Everything that an import may change.
  [[nodiscard]] std::string configuration() {
    time.advance(1s);  // the store saves
    return fileText(supportFolder + "spaces.json") + fileText("/home/user/.config/tallowin/preferences.json");
  }

  std::vector<SetUpCheck> checks;
  SettingsTransfer transfer{{settings,
                             desktop.files(),
                             time,
                             desktop.system(),
                             bridge,
                             desktop.accessibility(),
                             desktop.screenCapture(),
                             desktop.desktopFacts(),
                             {"0.1.0", "77"},
                             [this] { return checks; }}};
};

/// An export with these entries.
std::string bundle(const PropertyList& settings, const PropertyList& spaces = PropertyList::object()) {
  return PropertyList{
      {"version", 3}, {"exportedAt", "2026-01-01T00:00:00Z"}, {"spaces", spaces}, {"settings", settings}}
      .dump();
}

TEST(SettingsTransfer, AFreshExportHoldsTheDefaults) {
  TransferProgram program;
  const auto json = program.exported();
  EXPECT_EQ(json["version"], 1);
  EXPECT_EQ(json["exportedAt"], "2026-03-02T09:00:00Z");
  EXPECT_EQ(json["settings"].size(), 46U);
  EXPECT_EQ(json["settings"]["wrapAround"], "[true]");
  EXPECT_EQ(json["settings"]["hudDuration"], "[1.2]");
  EXPECT_EQ(json["settings"]["switchMode"], "[\"instant\"]");
  for (const auto* key : {"didShowOnboarding", "activeProfile", "overviewOrder", "demoMode"}) {
    EXPECT_FALSE(json["settings"].contains(key)) << key;
  }
  program.preferences.setObject("overviewOrder", {"b", "a"});
  program.preferences.setObject("demoMode", true);
  EXPECT_EQ(program.exported()["settings"].size(), 47U);
  EXPECT_EQ(program.exported()["settings"]["overviewOrder"], "[[\"b\",\"a\"]]");
  EXPECT_THAT(program.transfer.exportData(program.store), HasSubstr("{\n  \"exportedAt\": "));
}

TEST(SettingsTransfer, MovesEverythingToAnotherMachine) {
  TransferProgram from;
  from.preferences.setObject("gridColumns", 3);
  from.preferences.setObject("switchMode", "classic");
  from.preferences.setObject("overviewOrder", {"b"});
  auto metas = metasFromJson(PropertyList::parse(R"({"u1": {"name": "Ü", "future": [1]}, "fs:app": {"note": "n"}})"));
  SpaceAutomation automation;
  automation.pinnedApps = {"app"};
  (*metas)["u1"].automation = automation;
  from.store.replaceAll(*metas);
  const std::string file = "/home/user/Documents/Tallowin Settings.json";
  from.files().placeFolder("/home/user/Documents");
  ASSERT_TRUE(from.transfer.exportFile(from.store, file));

  TransferProgram to;
  to.store.setName("Old", "u2");
  to.preferences.setObject("activeProfile", "Mine");
  to.lines.clear();
  to.files().overwrite(file, from.fileText(file));
  ASSERT_TRUE(to.transfer.importFile(file, to.store));
  EXPECT_EQ(to.exported(), from.exported());
  EXPECT_EQ(to.store.metas(), *metas) << "records that the file does not have are gone";
  EXPECT_EQ(to.settings.text("activeProfile"), "Mine");
  EXPECT_EQ(to.take("writeAtomically").size(), 1U) << "all settings are written at once";

  from.files().setDiskFull(true);
  EXPECT_EQ(from.transfer.exportFile(from.store, file).error().sentence, "Export failed: No space left on device");
}

TEST(SettingsTransfer, PassesOverEntriesThatCannotBe) {
  TransferProgram program;
  const PropertyList settings = {
      {"didShowOnboarding", "[true]"}, {"unknown", "[1]"},        {"wrapAround", "[]"},
      {"hudEnabled", "[null]"},        {"localAPI", "[\"yes\"]"}, {"spaceLock", "true"},
      {"hudSize", "[\"small\""},       {"gridColumns", "[2.5]"},  {"notchHover", "[true, 1]"},
      {"backAndForth", "[false]"},     {"hudDuration", "[2]"},    {"spaceDock", std::string(9999, '[')}};
  EXPECT_TRUE(program.transfer.importData(bundle(settings), program.store));
  EXPECT_EQ(program.preferences.persistentDomain(),
            (std::map<std::string, PropertyList>{{"backAndForth", false}, {"hudDuration", 2.0}, {"notchHover", true}}));
}

TEST(SettingsTransfer, RefusesWhatIsNoExportAndChangesNothing) {
  const std::string whole = bundle(PropertyList::object());
  const auto without = [&](const char* key) {
    auto json = PropertyList::parse(whole);
    json.erase(key);
    return json.dump();
  };
  const std::pair<std::string, const char*> cases[] = {
      {"", "parse error"},
      {"[]", "missing"},
      {R"({"name": "a", "summary": "", "slots": []})", "missing"},
      {without("version"), "missing"},
      {without("exportedAt"), "missing"},
      {without("spaces"), "missing"},
      {without("settings"), "missing"},
      {bundle({{"wrapAround", false}}), "settings"},
      {bundle(PropertyList::array()), "settings"},
      {bundle({{"wrapAround", "[false]"}}, {{"u1", {{"name", 7}}}}), "spaces"},
      {bundle({{"wrapAround", "[false]"}}, PropertyList::array()), "spaces"},
      {R"({"settings": {"wrapAround": "[false]"}, )" + whole.substr(1), "\"settings\" stands twice"},
      {bundle({{"wrapAround", "[false]"}}, {{"u1", {{"name", "a\"b"}}}}).insert(1, R"("x": {"a": {"b": 1, "b": 2}}, )"),
       "\"b\" stands twice"},
      {std::string(100'000, '[') + std::string(100'000, ']'), "200 levels"},
      {"\xFF\xFE", "parse error"},
      {whole + std::string(100U << 20, ' '), "104857"},
  };
  for (const auto& [text, reason] : cases) {
    TransferProgram program;
    program.store.setName("Kept", "u1");
    const auto before = program.configuration();
    program.files().overwrite("/tmp/import.json", text);
    for (const auto& imported : {program.transfer.importData(text, program.store),
                                 program.transfer.importFile("/tmp/import.json", program.store)}) {
      ASSERT_FALSE(imported) << text.substr(0, 80);
      EXPECT_EQ(imported.error().sentence, "That file is not a Tallowin export.");
      EXPECT_THAT(imported.error().reason, HasSubstr(reason)) << text.substr(0, 80);
    }
    EXPECT_EQ(program.configuration(), before);
  }
  TransferProgram program;
  program.store.setName("Kept", "u1");
  const auto before = program.configuration();
  EXPECT_EQ(program.transfer.importFile("/nowhere", program.store).error().sentence, "That file cannot be read.");
  program.files().setDiskFull(true);
  EXPECT_EQ(program.transfer.importData(bundle({{"wrapAround", "[false]"}}), program.store).error().sentence,
            "The settings could not be saved.");
  program.files().setDiskFull(false);
  EXPECT_EQ(program.configuration(), before);
}

TEST(Diagnostics, TellHowThingsStand) {
  TransferProgram plain;
  EXPECT_EQ(plain.transfer.diagnostics(plain.snapshot(), {}),
            "Tallowin 0.1.0 (77)\nmacOS Version 15.3.1 (simulated)\nBridge health: 0b1111111 healthy=true\n"
            "Accessibility: true\nScreen Recording: true\nSwitch mode: instant\nDisplays: 1, Spaces: 4");

  TransferProgram other(
      R"({"missingFunctions": "all", "permissions": {"accessibility": false, "screenRecording": false},
    "preferences": {"switchMode": "classic"}, "files": {"/etc/os-release": "NAME=x\nPRETTY_NAME=\"Debian 12\"\n"},
    "windowManager": {"name": "Openbox\n", "version": "3.6.1", "missingHints": ["_NET_A", "_NET_B"]}})");
  other.checks = {{"Arrange Spaces", true}, {"Permission", false}};
  EXPECT_EQ(other.transfer.diagnostics(SpaceSnapshot::empty(), {"Overview", "Back"}),
            "Tallowin 0.1.0 (77)\nmacOS Version 15.3.1 (simulated)\nBridge health: 0b0 healthy=false\n"
            "Accessibility: false\nScreen Recording: false\nSwitch mode: classic\nDisplays: 0, Spaces: 0\n"
            "Check Arrange Spaces: ok\nCheck Permission: needs attention\n"
            "Shortcuts taken by other apps: Overview, Back\n"
            "Distribution: Debian 12\nWindow manager: Openbox  3.6.1\nEWMH not supported: _NET_A, _NET_B");
  EXPECT_EQ(prettyNameOfOSRelease("A=1\nPRETTY_NAME=plain\n"), "plain");
  EXPECT_EQ(prettyNameOfOSRelease("PRETTY_NAME='it'"), "it");
  EXPECT_EQ(prettyNameOfOSRelease("PRETTY_NAME=\""), "\"");
  EXPECT_EQ(prettyNameOfOSRelease("XPRETTY_NAME=x"), std::nullopt);
}

struct StateProgram : TransferProgram {
  StateProgram()
      : TransferProgram(R"({"start": "2026-03-02T09:00:00Z", "applications": [{"name": "Mail", "pid": 11}],
          "windows": [{"number": 1, "pid": 11, "space": 2}]})") {}

  SpaceWatcher watcher{{provider, bridge, desktop.workspaceNotifications(), desktop.defaultNotifications(),
                        desktop.files(), desktop.folders(), time, desktop.log()}};
  SpaceContents contents{{desktop.windowList(), desktop.workspace(), bridge, desktop.workspaceNotifications(),
                          desktop.system(), time, time}};
  StateExporter exporter{{watcher, store, contents, desktop.files(), paths, time, time, time, desktop.log()}};
};

TEST(StateExporter, WritesOnceForABurstOfChanges) {
  const std::string file = supportFolder + "state.json";
  StateProgram program;
  program.store.setName("Early", program.id(1));
  program.time.advance(1s);
  EXPECT_EQ(program.fileText(file), "none") << "no Spaces are known yet";
  program.watcher.start();
  program.time.advance(399ms);
  EXPECT_EQ(program.fileText(file), "none");
  program.time.advance(1ms);
  EXPECT_EQ(PropertyList::parse(program.fileText(file))["updatedAt"], "2026-03-02T09:00:01Z");

  program.contents.start();
  program.lines.clear();
  program.time.advance(1s);
  const auto state = PropertyList::parse(program.fileText(file));
  EXPECT_EQ(state["current"], program.id(1));
  EXPECT_EQ(state["spaces"][0]["name"], "Early");
  EXPECT_EQ(state["spaces"][1]["apps"], PropertyList::array({"Mail"}));
  for (int i = 0; i < 10; ++i) {
    program.store.setNote("note " + std::to_string(i), program.id(1));
    program.time.advance(39ms);
  }
  EXPECT_EQ(PropertyList::parse(program.fileText(file)), state);
  program.lines.clear();
  program.time.advance(361ms);
  EXPECT_EQ(PropertyList::parse(program.fileText(file))["spaces"][0]["note"], "note 9");
  std::size_t writes = 0;
  for (const auto& record : program.take("writeAtomically")) {
    writes += record["path"] == file ? 1 : 0;
  }
  EXPECT_EQ(writes, 1U);
}

}  // namespace
}  // namespace tallowin
