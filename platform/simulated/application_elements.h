#pragma once

#include "platform/accessibility.h"
#include "platform/simulated/desktop_state.h"

namespace tallowin {

/// The application element of a process, an ApplicationPart: "AXRole", "AXTitle", "AXHidden", "AXWindows" and
/// "AXFocusedWindow", where, as on the real system, windows on Spaces that are not active do not show. A window's
/// element has "AXRole", "AXTitle", "AXPosition", "AXSize", "AXMinimized", "AXMain" and "AXCloseButton" and the action
/// "AXRaise"; its position and size, "AXMinimized" and "AXMain" can be set. The state must outlive it.
[[nodiscard]] AXUIElement makeApplicationElement(DesktopState& state, ProcessID pid);

}  // namespace tallowin
