#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "commands/scripting/scripting_bridge.h"
#include "platform/script_events.h"

namespace tallowin {

/// A command of the scripting dictionary.
struct ScriptCommand {
  std::string_view className;    ///< what the dictionary maps the script's term to
  std::string_view argumentKey;  ///< of its one argument, a text; empty for none
  /// What it sends, made of the direct parameter and the argument. Not all commands look at them.
  SpaceCommand (*command)(const SpaceRef& space, const std::optional<std::string>& argument);
};

/// All of them.
[[nodiscard]] std::span<const ScriptCommand> scriptCommands();

/// Sends what a script's command stands for; there is no value. It fails only when there is no such command.
ScriptEvents::Result performScriptCommand(const ScriptCommandEvent& event, const ScriptingBridge& bridge);

}  // namespace tallowin
