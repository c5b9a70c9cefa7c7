// What the program tells others: the export and the diagnostics report; and copies of what was configured.

#include "automation/settings_transfer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "automation/diagnostics.h"
#include "base/json_text.h"
#include "tests/storing_program.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;

struct TransferProgram : StoringProgram {
  explicit TransferProgram(std::string_view scenarioJSON = R"({"start": "2026-03-02T09:00:00Z"})")
      : StoringProgram(scenarioJSON) {}

  [[nodiscard]] PropertyList exported() const { return PropertyList::parse(transfer.exportData()); }
  /// Everything that an import may change.
  [[nodiscard]] std::string configuration() {
    time.advance(1s);  // the store saves
    return fileText(supportFolder + "spaces.json") + fileText("/home/user/.config/tallowin/preferences.json");
  }

  /// Hands in a file with this text.
  [[nodiscard]] std::expected<void, ForeignFault> import(const std::string& text) {
    files().overwrite("/tmp/import.json", text);
    return transfer.importFile("/tmp/import.json");
  }

  SettingsTransfer transfer{services};
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
  for (const auto* key : {"didShowOnboarding", "activeProfile", "overviewOrder", "demoMode"}) {
    EXPECT_FALSE(json["settings"].contains(key)) << key;
  }
  program.preferences.setObject("overviewOrder", {"b", "a"});
  program.preferences.setObject("demoMode", true);
  EXPECT_EQ(program.exported()["settings"].size(), 47U);
  EXPECT_EQ(program.exported()["settings"]["overviewOrder"], "[[\"b\",\"a\"]]");
  EXPECT_THAT(program.transfer.exportData(), HasSubstr("{\n  \"exportedAt\": "));
}

TEST(SettingsTransfer, PassesOverEntriesThatCannotBe) {
  TransferProgram program;
  const PropertyList settings = {
      {"didShowOnboarding", "[true]"}, {"unknown", "[1]"},        {"wrapAround", "[]"},
      {"hudEnabled", "[null]"},        {"localAPI", "[\"yes\"]"}, {"spaceLock", "true"},
      {"hudSize", "[\"small\""},       {"gridColumns", "[2.5]"},  {"notchHover", "[true, 1]"},
      {"backAndForth", "[false]"},     {"hudDuration", "[2]"},    {"spaceDock", std::string(9999, '[')}};
  EXPECT_TRUE(program.import(bundle(settings)));
  EXPECT_EQ(program.preferences.persistentDomain(), (std::map<std::string, PropertyList>{{"backAndForth", false},
                                                                                         {"gridColumns", 2.5},
                                                                                         {"hudDuration", 2},
                                                                                         {"hudEnabled", nullptr},
                                                                                         {"localAPI", "yes"},
                                                                                         {"notchHover", true}}));
  EXPECT_FALSE(program.settings.get(setting::localAPI)) << "it is of the wrong type";
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
      {R"({"name": "a", "summary": "", "slots": []})", "missing"},
      {without("version"), "missing"},
      {without("spaces"), "missing"},
      {bundle({{"wrapAround", false}}), "settings"},
      {bundle({{"wrapAround", "[false]"}}, {{"u1", {{"name", 7}}}}), "spaces"},
      {R"({"settings": {"wrapAround": "[false]"}, )" + whole.substr(1), "\"settings\" stands twice"},
      {bundle({{"wrapAround", "[false]"}}, {{"u1", {{"name", "a\"b"}}}}).insert(1, R"("x": {"a": {"b": 1, "b": 2}}, )"),
       "\"b\" stands twice"},
      {std::string(100'000, '[') + std::string(100'000, ']'), "200 levels"},
      {whole + std::string(100U << 20, ' '), "104857"},
  };
  for (const auto& [text, reason] : cases) {
    TransferProgram program;
    program.store.setName("Kept", "u1");
    const auto before = program.configuration();
    const auto imported = program.import(text);
    ASSERT_FALSE(imported) << text.substr(0, 80);
    EXPECT_EQ(imported.error().sentence, "That file is not a Tallowin export.");
    EXPECT_THAT(imported.error().reason, HasSubstr(reason)) << text.substr(0, 80);
    EXPECT_EQ(program.configuration(), before);
  }
  TransferProgram program;
  program.files().setRoom(0);
  EXPECT_TRUE(program.import(bundle({{"wrapAround", "[false]"}})));
  EXPECT_FALSE(program.settings.get(setting::wrapAround));
  EXPECT_FALSE(program.storage.isSound()) << "what asked for it is told so";
}

TEST(Diagnostics, TellHowThingsStand) {
  TransferProgram other(
      R"({"missingFunctions": "all", "permissions": {"accessibility": false, "screenRecording": false},
    "preferences": {"switchMode": "classic"}, "files": {"/etc/os-release": "NAME=x\nPRETTY_NAME=\"Debian 12\"\n"},
    "windowManager": {"name": "Openbox\n", "version": "3.6.1", "missingHints": ["_NET_A", "_NET_B"]}})");
  EXPECT_EQ(diagnosticsReport(other.services, SpaceSnapshot::empty(), {"Overview", "Back"}),
            "Tallowin 0.1.0 (77)\nmacOS Version 15.3.1 (simulated)\nBridge health: 0b0 healthy=false\n"
            "Accessibility: false\nScreen Recording: false\nSwitch mode: classic\nDisplays: 0, Spaces: 0\n"
            "Check Accessibility: needs attention\nCheck Screen Recording: needs attention\nCheck Files saved: ok\n"
            "Shortcuts taken by other apps: Overview, Back\n"
            "Distribution: Debian 12\nWindow manager: Openbox  3.6.1\nEWMH not supported: _NET_A, _NET_B");
  EXPECT_EQ(prettyNameOfOSRelease("A=1\nPRETTY_NAME=plain\n"), "plain");
  EXPECT_EQ(prettyNameOfOSRelease("PRETTY_NAME='it'"), "it");
  EXPECT_EQ(prettyNameOfOSRelease("PRETTY_NAME=\""), "\"");
  EXPECT_EQ(prettyNameOfOSRelease("XPRETTY_NAME=x"), std::nullopt);
}

TEST(SettingsTransfer, TakesAlongWhoStandsAtWhichPlace) {
  TransferProgram program(R"({"desktopsByPlace": true, "files": {"~/.local/share/Tallowin/desktops.json": "{torn"}})");
  const auto names = program.desktop.files().list(supportFolder);
  EXPECT_TRUE(std::ranges::any_of(
      names, [](const std::string& name) { return name.starts_with("desktops.json.unreadable-"); }));
  EXPECT_FALSE(program.exported().contains("places")) << "without a file they are 1 to 4";
  program.desktop.parts().spaces.removeDesktop(2);
  EXPECT_EQ(program.exported()["places"], (PropertyList{1, 3, 4}));

  TransferProgram other(R"({"desktopsByPlace": true})");
  for (const auto& wrong : {PropertyList{1, 1}, PropertyList{"1"}, PropertyList(3), PropertyList(2000, 1)}) {
    auto bad = program.exported();
    bad["places"] = wrong;
    EXPECT_FALSE(other.import(bad.dump())) << wrong;
  }
  EXPECT_EQ(other.desktop.spacePlaces().places(), (std::vector<ManagedSpaceID>{1, 2, 3, 4}));
  EXPECT_TRUE(other.import(program.transfer.exportData()));
  EXPECT_EQ(other.desktop.spacePlaces().places(), (std::vector<ManagedSpaceID>{1, 3, 4, 2}));
}

struct BackupsProgram : TransferProgram {
  BackupsProgram()
      : TransferProgram(R"({"start": "2026-03-02T09:00:00Z", "timeZone": "+05:30", "desktopsByPlace": true})") {}

  Backups backups{services, transfer};
};

TEST(Backups, PutBackWhatWasThereAndKeepWhatIs) {
  BackupsProgram program;
  auto& store = program.store;
  store.setName("A", "managed-1");
  store.setName("B", "managed-2");
  program.preferences.setObject("activeProfile", "Work");
  program.preferences.setObject("wrapAround", false);
  program.backups.keep("before removing desktop 2");
  program.desktop.parts().spaces.removeDesktop(2);
  store.replaceAll({});
  program.preferences.setObject("activeProfile", "");
  program.preferences.setObject("wrapAround", true);

  EXPECT_EQ(program.backups.restore(0), std::nullopt);
  EXPECT_EQ(program.backups.restore(2), std::nullopt);
  EXPECT_EQ(program.backups.restore(1), Backups::Restored::all);
  EXPECT_EQ(store.meta("managed-2").name, "B");
  EXPECT_EQ(program.settings.get(setting::activeProfile), "Work");
  EXPECT_FALSE(program.settings.get(setting::wrapAround));
  EXPECT_EQ(program.desktop.spacePlaces().places(), (std::vector<ManagedSpaceID>{1, 2, 3, 4}));
  EXPECT_EQ(program.backups.listText(),
            "1  2026-03-02 14:30  before restore\n2  2026-03-02 14:30  before removing desktop 2\n");
  EXPECT_EQ(program.backups.restore(1), Backups::Restored::all) << "the restoring is undone";
  EXPECT_EQ(store.meta("managed-2").name, std::nullopt);
}

TEST(Backups, AreTheLastFiveThatCanBeRead) {
  BackupsProgram program;
  for (const auto* const reason : {"1", "2", "3", "4", "5", "6"}) {
    program.backups.keep(reason);
    program.time.jumpWallClock(-1h);
  }
  const auto reasons = [&] {
    std::vector<std::string> all;
    for (const auto& copy : program.backups.list()) {
      all.push_back(copy.reason);
    }
    return all;
  };
  EXPECT_THAT(reasons(), ElementsAre("6", "5", "4", "3", "2"));
  auto& files = program.desktop.parts().files;
  files.corrupt(supportFolder + "Backups/5.json");
  files.replace(supportFolder + "Backups/x.json", "{}");
  files.replace(supportFolder + "Backups/4.json",
                R"({"reason": "nothing in it", "exportedAt": "2026-03-02T09:00:00Z"})");
  EXPECT_THAT(reasons(), ElementsAre("6", "3", "2"));
  files.setRoom(0);
  program.backups.keep("not kept");
  EXPECT_THAT(reasons(), ElementsAre("6", "3", "2"));
}

}  // namespace
}  // namespace tallowin
