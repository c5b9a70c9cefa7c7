#pragma once

#include <memory>

#include "platform/accessibility.h"
#include "platform/emulated/mission_control_bar.h"

namespace tallowin {

/// The Dock's application element: a list of icons and, while the bar is open, Mission Control with a "Spaces Bar" for
/// each display. Elements hold the bar weakly; without it, and those of Mission Control while it is not open, they have
/// no attributes.
[[nodiscard]] AXUIElement makeDockElement(const std::weak_ptr<MissionControlBar>& bar);

}  // namespace tallowin
