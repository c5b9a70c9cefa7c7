// Profiles and templates: whole sets of what is said about the Spaces.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "automation/profile_store.h"
#include "automation/space_templates.h"
#include "tests/storing_program.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

const std::string profilesFile = supportFolder + "profiles.json";
const std::string templatesFile = supportFolder + "templates.json";

struct ProfilesProgram : StoringProgram {
  ProfilesProgram() : StoringProgram(R"({"start": "2026-03-02T09:00:00Z"})") {}

  [[nodiscard]] std::string active() const { return settings.get(setting::activeProfile); }
  [[nodiscard]] std::string name() const { return store.displayName(space(1)); }
  void setName(const std::string& name) { store.setName(name, id(1)); }

  ProfileStore profiles{services};
};

TEST(ProfileStore, SwitchingKeepsTheEditsOfTheActiveProfile) {
  ProfilesProgram program;
  program.setName("Office");
  program.profiles.saveCurrent("Work");
  program.setName("Sofa");
  program.profiles.saveCurrent("Home");
  program.setName("Garden");
  EXPECT_EQ(program.profiles.activate("wORK"), "Work");
  program.setName("Desk");
  EXPECT_EQ(program.profiles.activate("work"), "Work");
  EXPECT_EQ(program.profiles.activate("work"), "Work") << "the active profile is not saved over first";
  EXPECT_EQ(program.name(), "Office");
  EXPECT_EQ(program.profiles.activate("Home"), "Home");
  EXPECT_EQ(program.name(), "Garden");
  EXPECT_EQ(program.profiles.activate("Beach"), std::nullopt);

  program.profiles.saveCurrent("work");
  EXPECT_THAT(program.profiles.names(), ElementsAre("Work", "Home", "work")) << "saving looks at the case of letters";
  EXPECT_TRUE(program.profiles.remove("Work"));
  EXPECT_EQ(program.active(), "work");
  EXPECT_TRUE(program.profiles.remove("work"));
  EXPECT_EQ(program.active(), "");
}

TEST(ProfileStore, KeepsWhatNewerVersionsWrote) {
  ProfilesProgram program;
  program.files().overwrite(profilesFile, R"([{"name": "Work", "savedAt": "2026-01-01T00:00:00Z", "mood": "calm",
    "metas": {"x": {"name": "X", "weather": {"rain": true}}}}])");
  EXPECT_EQ(program.profiles.activate("work"), "Work");
  program.profiles.saveCurrent("Work");
  EXPECT_THAT(program.fileText(profilesFile), AllOf(HasSubstr("\"rain\": true"), HasSubstr("\"mood\": \"calm\""),
                                                    HasSubstr("\"savedAt\": \"2026-03-02T09:00:00Z\"")));
}

constexpr auto threeDesktops = R"({"start": "2026-03-02T09:00:00Z",
  "managedDisplaySpaces": [{"Display Identifier": "Main", "Current Space": {"ManagedSpaceID": 1, "uuid": "U1"},
    "Spaces": [{"ManagedSpaceID": 1, "uuid": "U1", "type": 0}, {"ManagedSpaceID": 9, "uuid": "F", "type": 4},
               {"ManagedSpaceID": 2, "uuid": "U2", "type": 0}, {"ManagedSpaceID": 3, "uuid": "U3", "type": 0}]}],
  "applications": [{"name": "Terminal", "bundleID": "com.apple.Terminal"}],
  "files": {"/Applications/com.tinyspeck.slackmacgap.app": "", "/evil.app": ""}})";

struct TemplatesProgram : StoringProgram {
  explicit TemplatesProgram(std::string_view scenarioJSON = threeDesktops) : StoringProgram(scenarioJSON) {}

  SpaceTemplates templates{services};
  SpaceManagement management{platform};
  TemplateCommands commands{services, templates, management};
};

TEST(SpaceTemplates, FillTheDesktopsThatThereAre) {
  TemplatesProgram program;
  SpaceAutomation existing;
  existing.keystrokeOnEnter = "cmd+1";
  existing.scriptOnLeave = "true";
  existing.launchApps = {"/old.app"};
  existing.openURLs = {"https://old.example"};
  program.store.setAutomation(existing, "U2");
  program.store.setNote("old", "U2");
  program.store.setName("Full", "F");

  const auto outcome = program.templates.apply(SpaceTemplate::builtIn().front(), program.snapshot());
  EXPECT_EQ(outcome, (SpaceTemplates::Outcome{3, 2}));
  const auto& metas = program.store.metas();
  ASSERT_THAT(metas, SizeIs(4));
  const auto& code = metas.at("U1");
  EXPECT_EQ(code.colorHex, "#9B6BF4");
  EXPECT_EQ(code.note, "Editor and terminal");
  EXPECT_THAT(code.automation->launchApps, ElementsAre("/Applications/Terminal.app")) << "the other is not installed";
  EXPECT_TRUE(code.automation->launchOnce && code.automation->launchOnlyIfEmpty);
  existing.launchApps = {};
  existing.openURLs = {};
  existing.launchOnlyIfEmpty = true;
  EXPECT_EQ(metas.at("U2").automation, existing);
  EXPECT_EQ(metas.at("U2").note, "Docs, PRs, localhost");
  EXPECT_EQ(metas.at("F").name, "Full");
  EXPECT_THAT(program.settings.get(setting::recentSpaceNames), ElementsAre("Chat", "Browser", "Code"));

  const SpaceTemplate blank{"Blank", "", {{" \u00A0\n", {}, {}, " \t\u2003x\r\n", {"../evil"}, {"https://a.example"}}}};
  EXPECT_EQ(program.templates.apply(blank, program.snapshot()), (SpaceTemplates::Outcome{1, 0}));
  EXPECT_EQ(metas.at("U1").name, std::nullopt);
  EXPECT_EQ(metas.at("U1").symbol, std::nullopt);
  EXPECT_EQ(metas.at("U1").note, "x");
  EXPECT_THAT(metas.at("U1").automation->launchApps, IsEmpty());
  EXPECT_THAT(metas.at("U1").automation->openURLs, ElementsAre("https://a.example"));
  EXPECT_EQ(program.templates.apply(blank, SpaceSnapshot::empty()), (SpaceTemplates::Outcome{0, 1}));
}

TEST(SpaceTemplates, AreImportedAndFound) {
  TemplatesProgram program;
  const std::string file = "/tmp/template.json";
  const auto import = [&](const std::string& text) {
    program.files().overwrite(file, text);
    return program.templates.importFile(file);
  };
  const auto developer = import(R"({"name": "developer", "summary": "Mine", "slots": [{"name": "One"}], "new": 1})");
  ASSERT_TRUE(developer);
  EXPECT_EQ(program.templates.named("developer"), *developer) << "exactly first";
  EXPECT_EQ(program.templates.named("DEVELOPER")->summary, "Code, browser, terminal, communication and docs.");
  EXPECT_TRUE(import(R"({"name": "Night", "summary": "", "slots": []})"));
  EXPECT_TRUE(import(R"({"name": "developer", "summary": "Again", "slots": [], "new": 1})"));
  EXPECT_THAT(program.templates.list(), SizeIs(7));
  const auto before = program.fileText(templatesFile);
  EXPECT_EQ(before, R"([{"name":"Night","slots":[],"summary":""},)"
                    R"({"name":"developer","new":1,"slots":[],"summary":"Again"}])");
  EXPECT_EQ(program.templates.named("Nothing"), std::nullopt);

  const std::string strange[] = {
      "",
      R"({"name": "a", "summary": "", "slots": {}})",
      R"({"name": "a", "summary": "", "slots": [{"name": 1}]})",
      R"({"name": "a", "summary": "", "slots": [{"name": "b", "apps": "c"}]})",
      R"({"name": "a", "name": "b", "summary": "", "slots": []})",
      R"({"name": "a", "summary": "", "slots": [], "x": ")" + std::string(largestForeignFile, 'x') + "\"}"};
  for (const auto& text : strange) {
    const auto imported = import(text);
    ASSERT_FALSE(imported) << text.substr(0, 60);
    EXPECT_EQ(imported.error().sentence, "That file is not a Tallowin template.");
    EXPECT_FALSE(imported.error().reason.empty());
  }
  EXPECT_EQ(program.templates.importFile("/nowhere").error().sentence, "That file cannot be read.");
  program.files().setRoom(0);
  EXPECT_TRUE(import(R"({"name": "Late", "summary": "", "slots": []})"));
  EXPECT_EQ(program.fileText(templatesFile), before);
  EXPECT_TRUE(program.templates.named("late")) << "it counts before it is in the file";
}

TEST(TemplateCommands, LeaveItWhereDesktopsCannotBeAdded) {
  const std::pair<const char*, std::vector<std::string>> cases[] = {
      {"Not Now", {}}, {"Add Desktops", {"! Mission Control could not be opened."}}};
  for (const auto& [button, toasts] : cases) {
    TemplatesProgram program(R"({"missionControl": {"opens": false}})");
    program.commands.apply("Freelancer");
    EXPECT_EQ(program.take("alert").at(0)["messageText"], "Freelancer needs 1 more desktop");
    program.desktop.parts().alerts.answer(button);
    program.time.advance(20s);
    EXPECT_EQ(program.takeToasts(), toasts);
    EXPECT_THAT(program.snapshot().allSpaces(), SizeIs(4));
  }
  TemplatesProgram program;
  program.commands.apply("Freelancer");
  EXPECT_EQ(program.take("alert").at(0)["messageText"], "Freelancer needs 2 more desktops");
  program.management.addDesktop([](SpaceManagement::Result /*result*/) {});  // one comes while the question is open
  program.time.advance(2s);
  program.desktop.parts().alerts.answer("Add Desktops");
  program.time.advance(20s);
  EXPECT_THAT(program.takeToasts(), ElementsAre("Applied Freelancer template (square.grid.2x2)"));
  EXPECT_THAT(program.snapshot().allSpaces(), SizeIs(6));
}

TEST(ProfileStore, OneIsChosenForASetOfDisplays) {
  ProfilesProgram program;
  EXPECT_TRUE(program.profiles.chooseForDisplays("work"));
  EXPECT_EQ(program.profiles.chosenForDisplays(), "work");
  program.profiles.saveCurrent("Work");
  program.profiles.displaysChanged();
  EXPECT_THAT(program.takeToasts(), ElementsAre("Profile: Work (person.crop.rectangle.stack)")) << "by another case";
  EXPECT_TRUE(program.profiles.chooseForDisplays(std::nullopt));
  EXPECT_EQ(program.profiles.chosenForDisplays(), std::nullopt);
}

}  // namespace
}  // namespace tallowin
