#pragma once

#include <utility>

#include "platform/simulated/script_actions.h"
#include "platform/simulated/simulated_desktop.h"

namespace tallowin {

/// An action as most of them are: something done to the desktop's parts.
template <typename Action>
ScriptAction onParts(Action action) {
  return [action = std::move(action)](SimulatedDesktop& desktop) { action(desktop.parts()); };
}

}  // namespace tallowin
