#include "windows/reconnect_restore.h"

#include <algorithm>
#include <utility>

namespace tallowin {

void ReconnectRestore::start() {
  observer_ =
      services_.defaultNotifications.addObserver(NotificationName::NSApplicationDidChangeScreenParametersNotification,
                                                 [this](const Notification& /*notification*/) { look(); });
}

void ReconnectRestore::look() {
  auto now = connectedDisplays(services_.displays, services_.watcher.latest());
  if (now.identifiers.empty() || now == latest_) {
    return;
  }
  const auto before = std::exchange(latest_, std::move(now));
  if (onChange) {
    onChange();
  }
  if (before) {
    displaysChanged(before->identifiers.size(), latest_->identifiers.size());
  }
}

void ReconnectRestore::displaysChanged(std::size_t before, std::size_t now) {
  if (!autoSaveHold_) {
    autoSaveHold_ = services_.layouts.holdAutoSave();
    fewest_ = before;
  }
  fewest_ = std::min(fewest_, now);
  settling_ = services_.mainQueue.after(delay, [this] { settle(); });
}

void ReconnectRestore::settle() {
  const auto hold = std::move(autoSaveHold_);
  if (latest_->identifiers.size() > fewest_ && services_.settings.get(setting::restoreOnDisplayReconnect)) {
    if (const auto layout = services_.layouts.load(layout_name::reconnect, latest_->key())) {
      restore(*layout);
    }
  }
}

void ReconnectRestore::restore(const WindowLayout& layout) {
  services_.contents.readNow();
  services_.layouts.restore(layout, services_.watcher.latest(), [&toasts = services_.toasts](std::size_t moved) {
    if (moved > 0) {
      toasts.show({"Restored " + std::to_string(moved) + " windows to your external display", "display.2"});
    }
  });
}

}  // namespace tallowin
