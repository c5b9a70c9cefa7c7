#include "windows/space_lock.h"

#include <algorithm>

namespace tallowin {

void SpaceLock::start() {
  observer_ = services_.workspaceNotifications.addObserver(
      NotificationName::NSWorkspaceDidActivateApplicationNotification, [this](const Notification& notification) {
        if (notification.application) {
          lastActivation_ = Activation{*notification.application, services_.clock.machAbsoluteTime()};
        }
      });
}

bool SpaceLock::spaceChanged(const std::optional<Space>& from, const Space& to, bool initiatedByTallowin) {
  const bool concerned = !initiatedByTallowin && from && from->displayID == to.displayID;
  if (!concerned || !services_.settings.get(setting::spaceLock) || !wasPulled()) {
    return false;
  }
  RunningApplication ended;
  ended.pid = lastActivation_->pid;
  goBack(*from, services_.workspace.runningApplicationWithProcessIdentifier(ended.pid).value_or(ended));
  return true;
}

bool SpaceLock::wasPulled() const {
  return lastActivation_ && lastActivation_->pid != services_.system.processIdentifier() &&
         std::chrono::nanoseconds(services_.clock.machAbsoluteTime() - lastActivation_->at) < pullTime;
}

void SpaceLock::goBack(const Space& left, const RunningApplication& application) {
  const auto& snapshot = services_.watcher.latest();
  const auto window = windowToBring(left, application.pid, snapshot);
  if (window && window->spaceID != left.managedID) {
    bring(*window, left, snapshot);
  }
  switchTo_(left);
  if (!window) {
    openHere(application);
  }
  services_.toasts.show({"Brought " + application.localizedName.value_or("the app") + " here", "lock"});
}

std::optional<WindowInfo> SpaceLock::windowToBring(const Space& left, ProcessID pid,
                                                   const SpaceSnapshot& snapshot) const {
  const auto display = snapshot.display(left);
  const auto active = display ? display->activeSpace() : std::nullopt;
  auto windows = contents_.windows().get();
  std::erase_if(windows, [&](const WindowInfo& window) { return window.pid != pid; });
  std::ranges::stable_partition(
      windows, [&](const WindowInfo& window) { return active && window.spaceID == active->managedID; });
  return windows.empty() ? std::nullopt : std::optional(windows.front());
}

/// The target is the Space that was left, not the active one, which is still the wrong one.
void SpaceLock::bring(const WindowInfo& window, const Space& left, const SpaceSnapshot& snapshot) {
  const FrontWindow moved{window.id, window.pid, window.frame};
  mover_.move(moved, left, snapshot, false, false, [&mover = mover_, moved](WindowMover::Result result) {
    if (result) {
      mover.raise(moved);
    }
  });
}

void SpaceLock::openHere(const RunningApplication& application) {
  if (!application.bundleIdentifier) {
    return;
  }
  opening_ = services_.mainQueue.after(openingDelay, [this, bundleID = *application.bundleIdentifier] {
    if (const auto path = services_.workspace.URLForApplicationWithBundleIdentifier(bundleID)) {
      services_.workspace.openApplicationAtURL(*path, OpenConfiguration(), [](const auto& /*opened*/) {});
    }
  });
}

}  // namespace tallowin
