#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/settings.h"
#include "commands/outcome.h"
#include "core/space.h"
#include "platform/log.h"
#include "platform/toasts.h"
#include "platform/workspace.h"
#include "windows/space_contents.h"
#include "windows/window_mover.h"

namespace tallowin {

/// Shows one chosen application (setting "scratchpadApp") on the current Space, or hides it. Main thread only.
class Scratchpad {
 public:
  struct Services {
    WindowMover& mover;
    const SpaceContents& contents;
    Workspace& workspace;
    const Settings& settings;
    Log& log;
  };

  explicit Scratchpad(Services services) : services_(services) {}

  /// Hides the application if it is the active one, and shows it otherwise: it is opened if it does not run, and its
  /// first window brought over if that stands on another Space than the active one of the menu-bar display. `toasts`
  /// tells the user when no application is chosen.
  Outcome toggle(const SpaceSnapshot& snapshot, Toasts& toasts);

 private:
  void bring(const std::string& bundleID, ProcessID anyProcess, const SpaceSnapshot& snapshot);

  const Services services_;
};

}  // namespace tallowin
