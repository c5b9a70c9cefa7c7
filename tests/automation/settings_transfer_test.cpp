// What may be imported, and what the diagnostics report tells.

#include "automation/settings_transfer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "automation/diagnostics.h"
#include "tests/storing_program.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
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

TEST(Diagnostics, NameTheDistribution) {
  const std::pair<const char*, std::optional<std::string>> cases[] = {{"A=1\nPRETTY_NAME=plain\n", "plain"},
                                                                      {"PRETTY_NAME='it'", "it"},
                                                                      {"PRETTY_NAME=\"", "\""},
                                                                      {"XPRETTY_NAME=x", std::nullopt}};
  for (const auto& [file, name] : cases) {
    EXPECT_EQ(prettyNameOfOSRelease(file), name) << file;
  }
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

}  // namespace
}  // namespace tallowin
