#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/simulated/scenario_value.h"

namespace tallowin {

class SimulatedDesktop;

/// What an action of the script does to the desktop when its time has come.
using ScriptAction = std::function<void(SimulatedDesktop&)>;

/// Reads the arguments of the action of this name, noting mistakes in the object. Nothing when there is no such action.
[[nodiscard]] std::optional<ScriptAction> readScriptAction(std::string_view name, ScenarioObject& arguments);

/// The names of all actions, sorted.
[[nodiscard]] std::vector<std::string_view> scriptActionNames();

}  // namespace tallowin
