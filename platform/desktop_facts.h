#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tallowin {

/// How desktops are switched, added and removed and windows are moved to them.
enum class DesktopKind {
  driven,  ///< as a user does it: by gestures, keys and the buttons of Mission Control
  asked    ///< by requests to the window manager
};

/// The program that manages the windows.
struct WindowManagerFacts {
  std::string name;     ///< as it calls itself; empty when it does not say
  std::string version;  ///< such as "3.6.1"; empty when it cannot be found out
  /// What this program uses of the Extended Window Manager Hints and the window manager does not claim to support, by
  /// the names of the hints (_NET_SUPPORTED).
  std::vector<std::string> missingHints;
  bool operator==(const WindowManagerFacts&) const = default;
};

/// One item of the set-up checklist: something that must be right for everything to work.
struct SetUpCheck {
  std::string title;  ///< a few words
  bool ok = false;
  std::string finding = {};  ///< how it is, in whole sentences
  std::string advice = {};   ///< what to do about it, in whole sentences; empty where there is nothing to be done
  bool operator==(const SetUpCheck&) const = default;
};

/// What the desktop is, for reports. Main thread only.
class DesktopFacts {
 public:
  virtual ~DesktopFacts() = default;

  /// The running window manager; nothing while none runs, and on systems where it is part of the system. May run a
  /// program to find out its version, and wait for it.
  virtual std::optional<WindowManagerFacts> windowManager() = 0;

  /// What of it the program works with, and what it lacks. May wait for other programs, a second at most.
  virtual std::vector<SetUpCheck> checks() = 0;
};

}  // namespace tallowin
