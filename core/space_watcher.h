#pragma once

#include <functional>
#include <optional>
#include <string_view>

#include "base/broadcaster.h"
#include "base/lifetime.h"
#include "base/replaced_file_watch.h"
#include "base/settings.h"
#include "base/subscriptions.h"
#include "core/space_provider.h"
#include "platform/desktop.h"
#include "platform/files.h"
#include "platform/notification_center.h"

namespace tallowin {

/// Keeps the current snapshot of the Spaces up to date and tells when it, or the active Space of the menu-bar display,
/// has changed. Everything that may signal a change leads to one refresh, 40 ms after the last signal; an exact sign of
/// the desktop's is followed in the same turn of the main queue, unless its change has to be judged by what comes after
/// it. Main thread only.
class SpaceWatcher {
 public:
  struct Services {
    const SpaceProvider& provider;
    Desktop& desktop;
    DesktopKind kind;
    NotificationCenter& workspaceNotifications;
    NotificationCenter& defaultNotifications;
    Files& files;
    const Folders& folders;
    const Settings& settings;
    MainQueue& mainQueue;
    Log& log;
  };

  explicit SpaceWatcher(Services services);
  SpaceWatcher(const SpaceWatcher&) = delete;
  SpaceWatcher& operator=(const SpaceWatcher&) = delete;

  /// Told of every snapshot whose displays differ from the one before, after it has been published.
  std::function<void(const SpaceSnapshot&)> onSnapshot;
  /// Told then of a new active Space of the menu-bar display, with the one before (nothing at the first).
  std::function<void(const std::optional<Space>& from, const Space& to)> onActiveSpaceChange;

  /// Starts watching and refreshes at once. Later calls do nothing.
  void start();

  /// Refreshes 40 ms from now, in place of a refresh that is pending. The reason is for people who debug.
  void requestRefresh(std::string_view reason);

  /// Takes a snapshot now. When none can be had the old one stays.
  void refresh();

  /// The Spaces as they are now, after a refresh.
  const SpaceSnapshot& fresh() {
    refresh();
    return snapshot_.get();
  }

  /// The Spaces as they were last seen; SpaceSnapshot::empty() before the first refresh.
  [[nodiscard]] const SpaceSnapshot& latest() const { return snapshot_.get(); }

  /// The latest snapshot, for those who are told of changes: before them and after.
  [[nodiscard]] Published<SpaceSnapshot>& snapshot() { return snapshot_; }

 private:
  void observeDesktop();
  void observeNotifications();
  void signSeen(const DesktopSign& sign);
  void follow();
  [[nodiscard]] bool isSettled(const DesktopReading& reading) const;
  void take(const DesktopReading& reading);
  void reportActiveSpace(const std::optional<Space>& before, const SpaceSnapshot& now);

  const Services services_;
  Published<SpaceSnapshot> snapshot_{SpaceSnapshot::empty()};
  std::uint64_t manager_ = 0;  ///< of the reading that the snapshot was made of
  ReplacedFileWatch plistSource_;
  Subscriptions observers_;
  WorkItem pendingRefresh_;
  WorkItem pendingFollow_;
  bool started_ = false;
  Lifetime lifetime_;
};

}  // namespace tallowin
