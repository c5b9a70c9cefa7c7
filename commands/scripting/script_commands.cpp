#include "commands/scripting/script_commands.h"

#include <algorithm>

#include "base/property_list_reading.h"

namespace tallowin {

namespace {

using ArgumentText = std::optional<std::string>;

constexpr ScriptCommand commands[] = {
    {"TWSwitchCommand", "",
     [](const SpaceRef& space, const ArgumentText&) -> SpaceCommand { return command::SwitchTo{space}; }},
    {"TWNextCommand", "", [](const SpaceRef&, const ArgumentText&) -> SpaceCommand { return command::Step{true}; }},
    {"TWPreviousCommand", "",
     [](const SpaceRef&, const ArgumentText&) -> SpaceCommand { return command::Step{false}; }},
    {"TWBackCommand", "", [](const SpaceRef&, const ArgumentText&) -> SpaceCommand { return command::Back{}; }},
    {"TWOverviewCommand", "", [](const SpaceRef&, const ArgumentText&) -> SpaceCommand { return command::Overview{}; }},
    {"TWMoveWindowCommand", "",
     [](const SpaceRef& space, const ArgumentText&) -> SpaceCommand { return command::MoveWindow{space}; }},
    {"TWRenameCommand", "name",
     [](const SpaceRef& space, const ArgumentText& name) -> SpaceCommand { return command::Rename{space, name}; }},
};

}  // namespace

std::span<const ScriptCommand> scriptCommands() {
  return commands;
}

ScriptEvents::Result performScriptCommand(const ScriptCommandEvent& event, const ScriptingBridge& bridge) {
  const auto* const found = std::ranges::find(commands, event.commandClass, &ScriptCommand::className);
  if (found == std::ranges::end(commands)) {
    return std::unexpected("there is no scripting command " + event.commandClass);
  }
  bridge.send(found->command(ScriptingBridge::ref(event.directParameter),
                             property_list::member(event.arguments, found->argumentKey, property_list::text)));
  return nullptr;
}

}  // namespace tallowin
