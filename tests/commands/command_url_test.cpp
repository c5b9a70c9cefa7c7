// The grammar of command URLs, and which Space a reference names.

#include "commands/command_url.h"

#include <gtest/gtest.h>

#include "tests/storing_program.h"

namespace tallowin {
namespace {

using namespace command;

std::optional<SpaceCommand> parse(const char* text) {
  const auto url = URL::parse(text);
  return url ? commandFromURL(*url).value_or(std::nullopt) : std::nullopt;
}

TEST(CommandURL, EveryFormOfTheGrammar) {
  const auto current = SpaceRef::current();
  const std::pair<const char*, SpaceCommand> cases[] = {
      {"TALLOWIN://SWITCH/current", SwitchTo{current}},
      {"tallowin://switch", SwitchTo{current}},
      {"tallowin://switch/Mail", SwitchTo{SpaceRef::name("Mail")}},
      {"tallowin://switch/Deep%20Work", SwitchTo{SpaceRef::name("Deep Work")}},
      {"tallowin://switch/CURRENT", SwitchTo{current}},
      {"tallowin://switch/3", SwitchTo{SpaceRef::number(3)}},
      {"tallowin://switch/+3", SwitchTo{SpaceRef::number(3)}},
      {"tallowin://switch/-1", SwitchTo{SpaceRef::number(-1)}},
      {"tallowin://switch/3a", SwitchTo{SpaceRef::name("3a")}},
      {"tallowin://switch/+", SwitchTo{SpaceRef::name("+")}},
      {"tallowin://switch/+-3", SwitchTo{SpaceRef::name("+-3")}},
      {"tallowin://switch/9223372036854775808", SwitchTo{SpaceRef::name("9223372036854775808")}},
      {"tallowin://switch?name=3", SwitchTo{SpaceRef::name("3")}},
      {"tallowin://switch?name=", SwitchTo{SpaceRef::name("")}},
      {"tallowin://switch?space=3", SwitchTo{SpaceRef::number(3)}},
      {"tallowin://switch?space=abc", SwitchTo{current}},
      {"tallowin://switch?space=", SwitchTo{current}},
      {"tallowin://switch/2?name=x&space=4", SwitchTo{SpaceRef::number(2)}},
      {"tallowin://NEXT", Step{true}},
      {"tallowin://right", Step{true}},
      {"tallowin://prev", Step{false}},
      {"tallowin://previous", Step{false}},
      {"tallowin://left", Step{false}},
      {"tallowin://back", Back{}},
      {"tallowin://last", Back{}},
      {"tallowin://overview", Overview{}},
      {"tallowin://move-window/NEXT", MoveWindowStep{true}},
      {"tallowin://move-window/left", MoveWindowStep{false}},
      {"tallowin://move-window/prev", MoveWindow{SpaceRef::name("prev")}},
      {"tallowin://move-window/2", MoveWindow{SpaceRef::number(2)}},
      {"tallowin://move-window?name=Mail", MoveWindow{SpaceRef::name("Mail")}},
      {"tallowin://rename/3?name=Inbox", Rename{SpaceRef::number(3), "Inbox"}},
      {"tallowin://rename?name=Inbox", Rename{current, "Inbox"}},
      {"tallowin://rename?name=", Rename{current, ""}},
      {"tallowin://rename?name", Rename{current, ""}},
      {"tallowin://rename/Mail", Rename{SpaceRef::name("Mail"), std::nullopt}},
      {"tallowin://note?text=a%0Ab&space=2", Note{SpaceRef::number(2), "a\nb"}},
      {"tallowin://note", Note{current, std::nullopt}},
      {"tallowin://setup/2", command::Setup{SpaceRef::number(2)}},
      {"tallowin://settings", OpenSettings{}},
      {"tallowin://diagnostics", Diagnostics{}},
      {"tallowin://profile/Work", Profile{"Work"}},
      {"tallowin://profile?name=Work", Profile{"Work"}},
      {"tallowin://template?name=", Template{""}},
      {"tallowin://save-layout", SaveLayout{}},
      {"tallowin://restore-layout", RestoreLayout{}},
      {"tallowin://eject", Eject{}},
      {"tallowin://windows/ALL", Windows{true}},
      {"tallowin://windows/current", Windows{false}},
      {"tallowin://launcher", Launcher{}},
      {"tallowin://launch", Launcher{}},
      {"tallowin://scratchpad", ToggleScratchpad{}},
      {"tallowin://minimize-all", MinimizeAll{}},
      {"tallowin://undo-minimize", UndoMinimize{}},
      {"tallowin://save-space", SaveAndClose{}},
      {"tallowin://add-desktop", AddDesktop{}},
      {"tallowin://remove-desktop?name=Mail", RemoveDesktop{current}},
      {"tallowin://notes/Mail", Notes{SpaceRef::name("Mail")}},
      {"tallowin://demo-tour", DemoTour{}},
      {"tallowin://up", Step2D{true}},
      {"tallowin://down", Step2D{false}},
  };
  std::set<std::size_t> seen;
  for (const auto& [text, command] : cases) {
    EXPECT_EQ(parse(text), std::optional(command)) << text;
    seen.insert(command.index());
  }
  EXPECT_EQ(seen.size(), std::variant_size_v<SpaceCommand>) << "a command without a case";
  for (const auto* text : {"tallowin://forward", "tallowin://", "tallowin:switch", "http://switch/3",
                           "tallowin://profile", "tallowin://template", "switch", "tallowin://switch%20"}) {
    EXPECT_EQ(parse(text), std::nullopt) << text;
  }
}

TEST(CommandURL, ANameSurvivesBeingEncoded) {
  for (const auto* name : {"Mail & more", "a/b?c#d%20", "Größe~1.5_-"}) {
    EXPECT_EQ(parse(("tallowin://switch/" + percentEncoded(name)).c_str()),
              SpaceCommand(SwitchTo{SpaceRef::name(name)}));
  }
}

TEST(CommandURL, ADoubledKeyIsFoundAfterTheSchemeAndBeforeTheHost) {
  const std::pair<const char*, const char*> cases[] = {
      {"tallowin://switch?name=a&name=b", "name"},
      {"tallowin://nonsense?a=1&a=1", "a"},
      {"tallowin://switch?n%61me=a&name", "name"},
  };
  for (const auto& [text, key] : cases) {
    const auto parsed = commandFromURL(*URL::parse(text));
    ASSERT_FALSE(parsed) << text;
    EXPECT_EQ(parsed.error().key, key);
  }
  EXPECT_TRUE(commandFromURL(*URL::parse("http://switch?name=a&name=b"))) << "another scheme never gets that far";
  EXPECT_TRUE(commandFromURL(*URL::parse("tallowin://switch?name=a&Name=b")));
}

TEST(SpaceRef, NamesResolveExactlyThenByBeginningThenByPart) {
  StoringProgram program("{}");
  auto& store = program.store;
  const auto snapshot = program.snapshot();
  const auto spaces = snapshot.allSpaces();
  // Desktop 1 is called Email, 2 Mailroom, 3 MAIL, 4 nothing.
  store.setName("Email", spaces[0].id);
  store.setName("Mailroom", spaces[1].id);
  store.setName("MAIL", spaces[2].id);
  const std::pair<SpaceRef, int> cases[] = {
      {SpaceRef::name("mail"), 3},    {SpaceRef::name("MAI"), 2},     {SpaceRef::name("ail"), 1},
      {SpaceRef::name("desktop"), 4}, {SpaceRef::name("nowhere"), 0}, {SpaceRef::name(""), 1},
      {SpaceRef::number(4), 4},       {SpaceRef::number(0), 0},       {SpaceRef::number(-1), 0},
      {SpaceRef::current(), 1},
  };
  for (const auto& [ref, number] : cases) {
    const auto space = resolve(ref, snapshot, store);
    EXPECT_EQ(space ? *space->desktopNumber : 0, number) << notFoundMessage(ref).value_or("current");
    EXPECT_EQ(resolve(ref, SpaceSnapshot::empty(), store), std::nullopt);
  }
  EXPECT_EQ(notFoundMessage(SpaceRef::number(-1)), "There is no Desktop -1");
  EXPECT_EQ(notFoundMessage(SpaceRef::name("No such")), "No Space is called No such");
  EXPECT_EQ(notFoundMessage(SpaceRef::current()), std::nullopt);
}

}  // namespace
}  // namespace tallowin
