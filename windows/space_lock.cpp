#include "windows/space_lock.h"

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
  const bool concerned = !initiatedByTallowin && from && from->displayID == to.displayID && onPulledAway;
  if (!concerned || !services_.settings.get(setting::spaceLock) || !wasPulled()) {
    return false;
  }
  RunningApplication ended;
  ended.pid = lastActivation_->pid;
  onPulledAway(*from, services_.workspace.runningApplicationWithProcessIdentifier(ended.pid).value_or(ended));
  return true;
}

bool SpaceLock::wasPulled() const {
  return lastActivation_ && lastActivation_->pid != services_.system.processIdentifier() &&
         std::chrono::nanoseconds(services_.clock.machAbsoluteTime() - lastActivation_->at) < pullTime;
}

}  // namespace tallowin
