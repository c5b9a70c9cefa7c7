#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "platform/geometry.h"
#include "platform/identifiers.h"

namespace tallowin {

/// The smallest window, in points each way, that may count as one.
inline constexpr double smallestWindow = 60;

/// An ordinary window of another application that stands on exactly one Space, as it was when it was read.
struct WindowInfo {
  WindowNumber id = 0;
  ProcessID pid = 0;                    ///< of the application that owns it
  std::optional<std::string> bundleID;  ///< of that application; absent if it has none
  std::string appName;
  std::string title;  ///< empty when the window has none
  CGRect frame;       ///< in screen coordinates, origin top left
  ManagedSpaceID spaceID = 0;
  bool operator==(const WindowInfo&) const = default;
};

/// An application with at least one window on a Space.
struct AppOnSpace {
  ProcessID pid = 0;
  std::optional<std::string> bundleID;
  std::string name;                     ///< as the first of the windows gave it
  std::vector<WindowNumber> windowIDs;  ///< on that Space, front to back
  bool operator==(const AppOnSpace&) const = default;
};

}  // namespace tallowin
