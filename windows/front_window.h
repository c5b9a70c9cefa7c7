#pragma once

#include <optional>
#include <vector>

#include "platform/windows.h"

namespace tallowin {

/// A window that is to be moved or raised.
struct FrontWindow {
  WindowNumber id = 0;
  ProcessID pid = 0;  ///< of the application that owns it
  CGRect frame;       ///< in screen coordinates, origin top left
  bool operator==(const FrontWindow&) const = default;
};

/// The first ordinary window of a list of windows on screen, front to back, that `owner` (or anyone, if absent) owns
/// and that is wider and taller than 60 points.
[[nodiscard]] std::optional<FrontWindow> frontmostWindow(const std::optional<std::vector<DesktopWindow>>& list,
                                                         std::optional<ProcessID> owner);

}  // namespace tallowin
