// What scripts and intents stand for, and what becomes of it.

#include <gtest/gtest.h>
#include <limits>

#include "commands/intents.h"
#include "commands/script_commands.h"

namespace tallowin {
namespace {

using namespace command;

TEST(ScriptingBridge, AValueStandsForASpaceByItsType) {
  const auto current = SpaceRef::current();
  const std::pair<PropertyList, SpaceRef> cases[] = {
      {nullptr, current},
      {0, current},
      {3, SpaceRef::number(3)},
      {-2, SpaceRef::number(-2)},
      {std::numeric_limits<std::uint64_t>::max(), current},
      {0.0, current},
      {0.9, current},
      {3.9, SpaceRef::number(3)},
      {-3.9, SpaceRef::number(-3)},
      {1e300, current},
      {0x1p63, current},
      {-0x1p63, SpaceRef::number(std::numeric_limits<std::int64_t>::min())},
      {std::numeric_limits<double>::quiet_NaN(), current},
      {"", SpaceRef::name("")},
      {"3", SpaceRef::number(3)},
      {"+3", SpaceRef::number(3)},
      {"-1", SpaceRef::number(-1)},
      {"0", SpaceRef::number(0)},
      {"3a", SpaceRef::name("3a")},
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

class ScriptingTest : public testing::Test {
 protected:
  ScriptingTest() {
    bridge.handler = [this](const SpaceCommand& command) { sent.push_back(command); };
    bridge.currentName = [] { return "Mail"; };
  }

  std::vector<SpaceCommand> sent;
  ScriptingBridge bridge;
};

TEST_F(ScriptingTest, EveryScriptCommandIsSent) {
  const std::pair<ScriptCommandEvent, SpaceCommand> cases[] = {
      {{"TWSwitchCommand", 3, {}}, SwitchTo{SpaceRef::number(3)}},
      {{"TWNextCommand", nullptr, {}}, Step{true}},
      {{"TWPreviousCommand", nullptr, {}}, Step{false}},
      {{"TWBackCommand", nullptr, {}}, Back{}},
      {{"TWOverviewCommand", nullptr, {}}, Overview{}},
      {{"TWMoveWindowCommand", "Mail", {}}, MoveWindow{SpaceRef::name("Mail")}},
      {{"TWRenameCommand", nullptr, {{"name", "Mail"}}}, Rename{SpaceRef::current(), "Mail"}},
      {{"TWRenameCommand", 2, {{"name", 7}}}, Rename{SpaceRef::number(2), std::nullopt}},
  };
  std::set<std::string> classes;
  for (const auto& [event, command] : cases) {
    EXPECT_EQ(performScriptCommand(event, bridge), ScriptEvents::Result(nullptr)) << event.commandClass;
    EXPECT_EQ(std::exchange(sent, {}), std::vector{command}) << event.commandClass;
    classes.insert(event.commandClass);
  }
  EXPECT_EQ(classes.size(), scriptCommands().size()) << "a class without a case";
  EXPECT_FALSE(performScriptCommand({"TWJumpCommand", nullptr, {}}, bridge));
}

TEST_F(ScriptingTest, EveryIntentIsSentOrAnswered) {
  struct Case {
    IntentEvent event;
    std::vector<SpaceCommand> commands;
    PropertyList value;
  };
  const Case cases[] = {
      {{"SwitchSpaceIntent", {{"space", "3"}}}, {SwitchTo{SpaceRef::number(3)}}, nullptr},
      {{"LastSpaceIntent", {}}, {Back{}}, nullptr},
      {{"MoveWindowIntent", {{"space", "current"}}}, {MoveWindow{SpaceRef::name("current")}}, nullptr},
      {{"SwitchProfileIntent", {{"profile", "Work"}}}, {Profile{"Work"}}, nullptr},
      {{"CurrentSpaceIntent", {}}, {}, "Mail"},
  };
  EXPECT_EQ(std::size(cases), intents().size());
  for (const auto& [event, commands, value] : cases) {
    EXPECT_EQ(performIntent(event, bridge), ScriptEvents::Result(value)) << event.intent;
    EXPECT_EQ(std::exchange(sent, {}), commands) << event.intent;
  }
  for (const auto& shortcut : TallowinShortcuts::appShortcuts()) {
    EXPECT_TRUE(performPhrase(std::string(shortcut.phraseBeforeName) + "tallowin", bridge)) << shortcut.intent;
  }
  EXPECT_EQ(sent, std::vector<SpaceCommand>{Back{}});
}

TEST(ScriptingBridge, NobodyThereIsNoFailure) {
  const ScriptingBridge bridge;
  EXPECT_TRUE(performScriptCommand({"TWBackCommand", nullptr, {}}, bridge));
  EXPECT_TRUE(performIntent({"LastSpaceIntent"}, bridge));
  EXPECT_EQ(performIntent({"CurrentSpaceIntent"}, bridge), ScriptEvents::Result(""));
}

}  // namespace
}  // namespace tallowin
