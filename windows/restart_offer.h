#pragma once

#include <memory>

#include "base/desktop_texts.h"
#include "base/lifetime.h"
#include "core/space_watcher.h"
#include "platform/alerts.h"
#include "platform/clock.h"
#include "platform/system.h"
#include "platform/workspace.h"
#include "windows/layout_manager.h"

namespace tallowin {

/// Offers to put windows back after the computer was restarted. Main thread only.
class RestartOffer {
 public:
  /// A machine that has been up for less counts as just restarted.
  static constexpr Duration recentRestart = std::chrono::seconds(900);
  /// Applications need this long to open their windows again after a login.
  static constexpr Duration delay = std::chrono::seconds(45);

  struct Services {
    LayoutManager& layouts;
    Alerts& alerts;
    Workspace& workspace;
    System& system;
    MainQueue& mainQueue;
    const Clock& clock;
    const DesktopTexts& texts;
    SpaceWatcher& watcher;
  };

  explicit RestartOffer(Services services) : services_(services) {}
  RestartOffer(const RestartOffer&) = delete;
  RestartOffer& operator=(const RestartOffer&) = delete;

  /// To be called at start-up. If the machine was just restarted and the layout "auto" has windows for the displays
  /// that are connected 45 seconds later, the user is asked then.
  void start();

 private:
  void offer();
  void restore(const WindowLayout& layout);

  const Services services_;
  WorkItem waiting_;
  Lifetime lifetime_;
};

}  // namespace tallowin
