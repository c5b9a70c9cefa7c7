#pragma once

#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "platform/windows.h"
#include "windows/window_info.h"

namespace tallowin {

/// The applications on each Space that has any.
using AppsBySpace = std::map<ManagedSpaceID, std::vector<AppOnSpace>>;

/// What one look at the window list found.
struct SpaceContentsReading {
  AppsBySpace appsBySpace;
  std::vector<WindowInfo> windows;  ///< front to back
  bool operator==(const SpaceContentsReading&) const = default;
};

/// What must be known beyond the window list to read it.
struct SpaceContentsLookups {
  ProcessID ownPID = 0;  ///< this program's windows are left out
  std::function<std::optional<RunningApplication>(ProcessID)> runningApplication;
  /// The Spaces that show a window, where the list does not tell; nothing on failure.
  std::function<std::optional<std::vector<ManagedSpaceID>>(WindowNumber)> spacesForWindow;
};

/// What a list of all windows tells; nothing reads as empty. Any thread on which the lookups may be called.
[[nodiscard]] SpaceContentsReading readSpaceContents(const std::optional<std::vector<DesktopWindow>>& list,
                                                     const SpaceContentsLookups& lookups);

}  // namespace tallowin
