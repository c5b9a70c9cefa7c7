#pragma once

#include <functional>
#include <optional>

#include "base/lifetime.h"
#include "core/program_services.h"
#include "platform/pinned.h"
#include "windows/layout_manager.h"
#include "windows/window_layout.h"

namespace tallowin {

/// Notices when the set of connected displays changes, puts windows back when displays are connected again, and keeps
/// automatic saving from recording what the system did to the windows meanwhile. Plugging in a dock makes displays come
/// and go several times, which counts as one change; that no display at all is connected, as while they sleep, is none.
/// Main thread only.
class ReconnectRestore : Pinned {
 public:
  /// From the last change of the displays to the restore: the system moves windows about itself at first.
  static constexpr Duration delay = std::chrono::seconds(3);

  ReconnectRestore(const ProgramServices& services, SpaceContents& contents, LayoutManager& layouts)
      : services_(services), contents_(contents), layouts_(layouts) {}

  /// Told of the first set and of every other one at once, before windows are put back.
  std::function<void()> onChange;

  /// From now on looks whenever the displays' arrangement changes. Call once.
  void start();

  /// Looks at the displays. To be called with every new snapshot too. Three seconds after the last change the layout
  /// last saved for these displays is put back, if there are more than there were at any time during the changes and
  /// the setting "restoreOnDisplayReconnect" is on.
  void look();

 private:
  void displaysChanged(std::size_t before, std::size_t now);
  void settle();
  void restore(const WindowLayout& layout);

  const ProgramServices& services_;
  SpaceContents& contents_;
  LayoutManager& layouts_;
  Subscription observer_;
  std::optional<std::vector<std::string>> latest_;  ///< as last seen
  // While the displays change:
  std::size_t fewest_ = 0;  ///< so many displays there were at least
  Subscription autoSaveHold_;
  WorkItem settling_;
};

/// Offers to put windows back after the computer was restarted. Main thread only.
class RestartOffer : Pinned {
 public:
  /// A machine that has been up for less counts as just restarted.
  static constexpr Duration recentRestart = std::chrono::seconds(900);
  /// Applications need this long to open their windows again after a login.
  static constexpr Duration delay = std::chrono::seconds(45);

  RestartOffer(const ProgramServices& services, LayoutManager& layouts) : services_(services), layouts_(layouts) {}

  /// To be called at start-up. If the machine was just restarted and the layout "auto" has windows for the displays
  /// that are connected 45 seconds later, the user is asked then.
  void start();

 private:
  void offer();
  void restore(const WindowLayout& layout);

  const ProgramServices& services_;
  LayoutManager& layouts_;
  WorkItem waiting_;
  Lifetime lifetime_;
};

}  // namespace tallowin
