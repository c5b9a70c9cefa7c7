#include "commands/space_command.h"

#include <array>

namespace tallowin {

std::string_view nameOf(const SpaceCommand& command) {
  constexpr auto names = std::to_array<std::string_view>(
      {"switchTo",   "step",        "moveWindow",   "moveWindowStep", "rename",        "note",    "setup",
       "profile",    "template",    "windows",      "removeDesktop",  "notes",         "step2D",  "back",
       "overview",   "settings",    "diagnostics",  "saveLayout",     "restoreLayout", "eject",   "launcher",
       "scratchpad", "minimizeAll", "undoMinimize", "saveAndClose",   "addDesktop",    "demoTour"});
  static_assert(names.size() == std::variant_size_v<SpaceCommand>);
  return names.at(command.index());
}

}  // namespace tallowin
