// The grammar of command URLs, which Space a reference names, and what scripts and intents stand for.

#include "commands/command_url.h"

#include <gtest/gtest.h>
#include <limits>

#include "commands/scripting/scripting_bridge.h"
#include "tests/storing_program.h"

namespace tallowin {
namespace {

using namespace command;

std::optional<SpaceCommand> parse(const char* text) {
  const auto url = URL::parse(text);
  return url ? commandFromURL(*url).value_or(std::nullopt) : std::nullopt;
}

TEST(CommandURL, ArgumentsHaveTheirForms) {
  const auto current = SpaceRef::current();
  const std::pair<const char*, SpaceCommand> cases[] = {
      {"TALLOWIN://SWITCH/current", SwitchTo{current}},
      {"tallowin://switch", SwitchTo{current}},
      {"tallowin://switch/Deep%20Work", SwitchTo{SpaceRef::name("Deep Work")}},
      {"tallowin://switch/CURRENT", SwitchTo{current}},
      {"tallowin://switch/+3", SwitchTo{SpaceRef::number(3)}},
      {"tallowin://switch/-1", SwitchTo{SpaceRef::number(-1)}},
      {"tallowin://switch/+-3", SwitchTo{SpaceRef::name("+-3")}},
      {"tallowin://switch/9223372036854775808", SwitchTo{SpaceRef::name("9223372036854775808")}},
      {"tallowin://switch?name=3", SwitchTo{SpaceRef::name("3")}},
      {"tallowin://switch?space=3", SwitchTo{SpaceRef::number(3)}},
      {"tallowin://switch?space=abc", SwitchTo{current}},
      {"tallowin://switch/2?name=x&space=4", SwitchTo{SpaceRef::number(2)}},
      {"tallowin://previous", Step{false}},
      {"tallowin://last", Back{}},
      {"tallowin://move-window/NEXT", MoveWindowStep{true}},
      {"tallowin://move-window/left", MoveWindowStep{false}},
      {"tallowin://move-window/prev", MoveWindow{SpaceRef::name("prev")}},
      {"tallowin://move-window?name=Mail", MoveWindow{SpaceRef::name("Mail")}},
      {"tallowin://rename/3?name=Inbox", Rename{SpaceRef::number(3), "Inbox"}},
      {"tallowin://rename?name=Inbox", Rename{current, "Inbox"}},
      {"tallowin://rename/Mail", Rename{SpaceRef::name("Mail"), std::nullopt}},
      {"tallowin://note?text=a%0Ab&space=2", Note{SpaceRef::number(2), "a\nb"}},
      {"tallowin://note", Note{current, std::nullopt}},
      {"tallowin://setup/2", command::Setup{SpaceRef::number(2)}},
      {"tallowin://profile?name=Work", Profile{"Work"}},
      {"tallowin://windows/ALL", command::Windows{true}},
      {"tallowin://remove-desktop?name=Mail", RemoveDesktop{current}},
      {"tallowin://notes/Mail", Notes{SpaceRef::name("Mail")}},
  };
  for (const auto& [text, command] : cases) {
    EXPECT_EQ(parse(text), std::optional(command)) << text;
  }
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

TEST(SpaceRef, NamesResolveExactlyThenByBeginningThenByPart) {
  StoringProgram program("{}");
  auto& store = program.store;
  const auto snapshot = program.snapshot();
  store.setName("Email", program.id(1));
  store.setName("Mailroom", program.id(2));
  store.setName("MAIL", program.id(3));
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

TEST(ScriptingBridge, AValueStandsForASpaceByItsType) {
  const auto current = SpaceRef::current();
  const std::pair<PropertyList, SpaceRef> cases[] = {
      {nullptr, current},
      {0, current},
      {3, SpaceRef::number(3)},
      {std::numeric_limits<std::uint64_t>::max(), current},
      {0.9, current},
      {3.9, SpaceRef::number(3)},
      {-3.9, SpaceRef::number(-3)},
      {1e300, current},
      {0x1p63, current},
      {-0x1p63, SpaceRef::number(std::numeric_limits<std::int64_t>::min())},
      {std::numeric_limits<double>::quiet_NaN(), current},
      {"", SpaceRef::name("")},
      {"3", SpaceRef::number(3)},
      {"-1", SpaceRef::number(-1)},
      {"0", SpaceRef::number(0)},
      {"9223372036854775808", SpaceRef::name("9223372036854775808")},
      {"current", SpaceRef::name("current")},
      {true, current},
      {PropertyList::array({3}), current},
      {PropertyList::object(), current},
  };
  for (const auto& [value, ref] : cases) {
    EXPECT_EQ(ScriptingBridge::ref(value), ref) << value;
  }
}

}  // namespace
}  // namespace tallowin
