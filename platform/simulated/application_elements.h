#pragma once

#include "platform/accessibility.h"
#include "platform/simulated/desktop_state.h"

namespace tallowin {

/// The application element of a process: "AXRole", "AXTitle", "AXHidden", "AXWindows" and "AXFocusedWindow", where, as
/// on the real system, windows on Spaces that are not active do not show. The state must outlive it.
[[nodiscard]] AXUIElement makeApplicationElement(DesktopState& state, ProcessID pid);

/// The element of a window: "AXRole", "AXTitle", "AXPosition", "AXSize", "AXMinimized", "AXMain" and "AXCloseButton";
/// the action "AXRaise". Its position and size, "AXMinimized" and "AXMain" can be set.
[[nodiscard]] AXUIElement makeWindowElement(DesktopState& state, WindowNumber window);

}  // namespace tallowin
