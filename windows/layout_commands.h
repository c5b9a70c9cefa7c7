#pragma once

#include "commands/commands_under_way.h"
#include "platform/toasts.h"
#include "windows/layout_manager.h"

namespace tallowin {

/// The user's commands about window layouts, with what the user is told of them. Main thread only.
class LayoutCommands {
 public:
  LayoutCommands(LayoutManager& layouts, Toasts& toasts) : layouts_(layouts), toasts_(toasts) {}

  /// Saves the layout "manual" for the displays that are connected.
  Outcome saveLayout(const SpaceSnapshot& snapshot);

  /// Puts windows back as "manual" has them, or "auto" if that was never saved for these displays.
  void restoreLayout(const SpaceSnapshot& snapshot, const CommandAnswer& answer);

  /// Gathers all windows on the display that stays when the others are unplugged.
  void eject(const SpaceSnapshot& snapshot, const CommandAnswer& answer);

 private:
  LayoutManager& layouts_;
  Toasts& toasts_;
};

}  // namespace tallowin
