#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tallowin {

/// The program that manages the windows.
struct WindowManagerFacts {
  std::string name;     ///< as it calls itself; empty when it does not say
  std::string version;  ///< such as "3.6.1"; empty when it cannot be found out
  /// What this program uses of the Extended Window Manager Hints and the window manager does not claim to support, by
  /// the names of the hints (_NET_SUPPORTED).
  std::vector<std::string> missingHints;
  bool operator==(const WindowManagerFacts&) const = default;
};

/// What the desktop is, for reports. Main thread only.
class DesktopFacts {
 public:
  virtual ~DesktopFacts() = default;

  /// The running window manager; nothing while none runs, and on systems where it is part of the system. May run a
  /// program to find out its version, and wait for it.
  virtual std::optional<WindowManagerFacts> windowManager() = 0;
};

}  // namespace tallowin
