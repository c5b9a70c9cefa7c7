// Settings as the user has them in a file on the simulated machine, and as people write them.

#include "base/settings.h"

#include <gtest/gtest.h>

#include "base/json_text.h"
#include "base/preferences.h"
#include "base/settings_table.h"
#include "platform/simulated/simulated_files.h"
#include "platform/simulated/virtual_time.h"
#include "tests/lines_log.h"

namespace tallowin {
namespace {

class SettingsTest : public testing::Test {
 protected:
  SettingsTest() { settings.registerDefaults(); }

  void edit(std::string_view text) {
    files.replace(file, text);
    time.advance(Duration::zero());
  }

  [[nodiscard]] PropertyList stored() { return PropertyList::parse(files.read(file).value_or("null")); }

  const std::filesystem::path file = "/home/u/.config/tallowin/preferences.json";
  VirtualTime time;
  Journal journal{time, [](std::string_view) {}};
  SimulatedFiles files{time, time, journal};
  LinesLog log;
  Storage storage{{files, time, nullptr, time, log}};
  Preferences preferences{storage, files, time, file, [](std::string_view) { return std::nullopt; }};
  Settings settings{preferences};
};

TEST_F(SettingsTest, AFreshInstallReadsItsDefaultsAndWritesNothing) {
  std::size_t registered = 0;
  for (const auto& setting : settingsTable()) {
    registered += setting.registeredDefault().is_null() ? 0 : 1;
    const auto value = settings.value(setting);
    EXPECT_EQ(value.value_or(nullptr), setting.registeredDefault()) << setting.key;
    EXPECT_TRUE(setting.registeredDefault().is_null() || valueOfType(setting.type, setting.registeredDefault()));
    EXPECT_FALSE(setting.sentence.empty()) << setting.key;
  }
  EXPECT_EQ(registered, 48U);
  EXPECT_EQ(settings.get(setting::hudDuration), 1.2);
  EXPECT_EQ(settings.get(setting::gridColumns), 0);
  EXPECT_EQ(settings.get(setting::desktopShortcutModifier), DesktopShortcutModifier::controlOption);
  EXPECT_TRUE(settings.get(setting::profileByDisplaySetup).empty());
  EXPECT_FALSE(files.exists(file));
}

TEST_F(SettingsTest, UnknownCasesFallBackAsTheirEnumerationSays) {
  edit(R"({"switchMode": "Classic", "desktopShortcutModifier": "super", "menuBarStyle": "dots"})");
  EXPECT_EQ(settings.get(setting::switchMode), SwitchMode::instant);
  EXPECT_EQ(settings.get(setting::desktopShortcutModifier), DesktopShortcutModifier::off) << "not the default";
  EXPECT_EQ(settings.get(setting::menuBarStyle), MenuBarStyle::dots);
}

TEST_F(SettingsTest, AValueOfTheWrongTypeReadsAsNotSet) {
  edit(R"({"hudEnabled": 0, "hudDuration": 2, "gridColumns": 3.0, "switchSound": ["x"], "recentSpaceNames": ["a", 1],
           "profileByDisplaySetup": {"A+B": "Desk"}})");
  EXPECT_TRUE(settings.get(setting::hudEnabled));
  EXPECT_EQ(settings.get(setting::hudDuration), 2.0);
  EXPECT_EQ(settings.get(setting::gridColumns), 0);
  EXPECT_EQ(settings.get(setting::switchSound), "");
  EXPECT_TRUE(settings.get(setting::recentSpaceNames).empty());
  EXPECT_EQ(settings.get(setting::profileByDisplaySetup).at("A+B"), "Desk");
}

TEST_F(SettingsTest, AnEditByHandTakesEffectInTheNextTurnAndSurvivesTheNextWrite) {
  preferences.setObject("hudEnabled", false);
  edit(R"({"hudEnabled": true, "wrapAround": false, "somebody else's": [1]})");
  EXPECT_TRUE(settings.get(setting::hudEnabled));
  EXPECT_FALSE(settings.get(setting::wrapAround));
  int told = 0;
  const auto observer = preferences.observe([&told] { ++told; });
  EXPECT_TRUE(preferences.setObject("gridColumns", 4));
  EXPECT_EQ(told, 1);
  EXPECT_EQ(stored(), PropertyList::parse(
                          R"({"hudEnabled": true, "wrapAround": false, "somebody else's": [1], "gridColumns": 4})"));
  files.take(file);
  EXPECT_FALSE(settings.get(setting::wrapAround)) << "it was looked at in this turn";
  time.advance(Duration::zero());
  EXPECT_TRUE(settings.get(setting::wrapAround));
}

TEST_F(SettingsTest, AFileThatCannotBeUnderstoodIsReportedOnceAndKeptAsideByTheNextWrite) {
  preferences.setObject("wrapAround", false);
  int kept = 0;  // all in one second
  for (const auto* bad : {"{\"wrapAround\": tru", "[1, 2]", "\xff\xfe", ""}) {
    edit(bad);
    EXPECT_FALSE(settings.get(setting::wrapAround)) << "the value read before stays in force";
    EXPECT_FALSE(settings.get(setting::wrapAround));
    EXPECT_EQ(files.read(file).value_or("nothing"), bad) << "reading moves nothing";
    ASSERT_EQ(log.lines.size(), 1U);
    EXPECT_EQ(preferences.fault(), log.lines.front());
    log.lines.clear();

    EXPECT_TRUE(preferences.setObject("gridColumns", 2));
    const auto aside = file.string() + ".unreadable-20260302T090000Z" + (kept++ > 0 ? "-" + std::to_string(kept) : "");
    EXPECT_EQ(files.read(aside).value_or("nothing"), bad);
    EXPECT_EQ(stored(), PropertyList::parse(R"({"gridColumns": 2, "wrapAround": false})"));
    EXPECT_EQ(preferences.fault(), std::nullopt);
    EXPECT_EQ(log.lines.size(), 1U);
    log.lines.clear();
  }
}

TEST_F(SettingsTest, ObserversAreToldOfEveryEditByHand) {
  int told = 0;
  const auto observer = preferences.observe([&told] { ++told; });
  time.advance(std::chrono::seconds(1));
  edit(R"({"wrapAround": false})");
  EXPECT_FALSE(settings.get(setting::wrapAround)) << "who reads it first takes nothing from the observers";
  time.advance(std::chrono::seconds(2));
  EXPECT_EQ(told, 1) << "there was no file before";
  edit(R"({"wrapAround": true})");
  time.advance(std::chrono::milliseconds(100));
  edit(R"({"gridColumns": 2})");
  time.advance(std::chrono::seconds(1));
  EXPECT_EQ(told, 3) << "the second edit came before the new file was watched";
  edit(R"({"gridColumns":   2})");
  time.advance(std::chrono::seconds(1));
  EXPECT_EQ(told, 3) << "nothing has changed";
}

TEST_F(SettingsTest, WhatCannotBeWrittenIsInForceAndComesIntoTheFileAsThatStandsThen) {
  preferences.setObject("gridColumns", 2);
  preferences.setObject("hudDuration", 2.0);
  files.setRoom(0);
  EXPECT_FALSE(preferences.setObject("gridColumns", 3));
  EXPECT_FALSE(preferences.removeObject("hudDuration"));
  EXPECT_FALSE(preferences.removeObject("hudDuration")) << "it still stands in the file";
  EXPECT_EQ(settings.get(setting::gridColumns), 3);
  EXPECT_EQ(settings.get(setting::hudDuration), 1.2);
  EXPECT_EQ(log.lines.size(), 1U) << "said once";
  edit(R"({"gridColumns": 2, "hudDuration": 2.0, "wrapAround": false})");
  files.setRoom(std::nullopt);
  time.advance(std::chrono::seconds(30));
  EXPECT_EQ(stored(), PropertyList::parse(R"({"gridColumns": 3, "wrapAround": false})"));
  EXPECT_EQ(log.lines.size(), 2U);
  EXPECT_TRUE(preferences.removeObject("gridColumns"));
  EXPECT_TRUE(preferences.removeObject("gridColumns"));
  EXPECT_EQ(settings.get(setting::gridColumns), 0);
}

TEST(SettingText, PeopleAreToldWhatWouldBeRight) {
  struct Case {
    const char* key;
    const char* text;
    const char* valueOrError;  // JSON of the value, or words of the error
  };
  const Case cases[] = {
      {"hudEnabled", "true", "true"},
      {"hudEnabled", "yes", "takes true or false, not \"yes\""},
      {"hudDuration", "2", "2.0"},
      {"hudDuration", "1e400", "takes a number"},
      {"gridColumns", "-3", "-3"},
      {"gridColumns", "99999999999999999999", "takes a whole number"},
      {"switchMode", "Classic", "is one of instant, classic, not \"Classic\""},
      {"switchSound", "", "\"\""},
      {"overviewOrder", R"(["a","b"])", R"(["a","b"])"},
      {"overviewOrder", "a,b", "takes a JSON list of texts"},
      {"profileByDisplaySetup", R"({"A":1})", "takes a JSON object of texts"},
  };
  for (const auto& [key, text, expected] : cases) {
    const auto value = settingFromText(*findSetting(key), text);
    const auto seen = value ? compactJSON(*value) : value.error();
    EXPECT_NE(seen.find(expected), std::string::npos) << key << " " << text << ": " << seen;
  }
  EXPECT_NE(unknownSettingMessage("switchmode").find("did you mean switchMode?"), std::string::npos);
  EXPECT_NE(unknownSettingMessage("entirely different").find("--settings-list"), std::string::npos);
}

}  // namespace
}  // namespace tallowin
