#pragma once

#include "platform/simulated/script_actions.h"

namespace tallowin {

/// Readers of the script's actions on applications and windows: each asks for the arguments, noting mistakes in the
/// object. docs/simulation.md says what the actions do.

[[nodiscard]] ScriptAction activateApplication(ScenarioObject& arguments);
[[nodiscard]] ScriptAction launchApplication(ScenarioObject& arguments);
[[nodiscard]] ScriptAction quitApplication(ScenarioObject& arguments);
[[nodiscard]] ScriptAction hideApplication(ScenarioObject& arguments);
[[nodiscard]] ScriptAction unhideApplication(ScenarioObject& arguments);
[[nodiscard]] ScriptAction setResponseTime(ScenarioObject& arguments);
[[nodiscard]] ScriptAction openWindow(ScenarioObject& arguments);
[[nodiscard]] ScriptAction closeWindow(ScenarioObject& arguments);
[[nodiscard]] ScriptAction retitleWindow(ScenarioObject& arguments);
[[nodiscard]] ScriptAction moveWindow(ScenarioObject& arguments);
[[nodiscard]] ScriptAction minimizeWindow(ScenarioObject& arguments);

}  // namespace tallowin
