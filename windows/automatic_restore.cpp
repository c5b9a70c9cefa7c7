#include "windows/automatic_restore.h"

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
  if (now.empty() || now == latest_) {
    return;
  }
  const auto before = std::exchange(latest_, std::move(now));
  if (onChange) {
    onChange();
  }
  if (before) {
    displaysChanged(before->size(), latest_->size());
  }
}

void ReconnectRestore::displaysChanged(std::size_t before, std::size_t now) {
  if (!autoSaveHold_) {
    autoSaveHold_ = layouts_.holdAutoSave();
    fewest_ = before;
  }
  fewest_ = std::min(fewest_, now);
  settling_ = services_.mainQueue.after(delay, [this] { settle(); });
}

void ReconnectRestore::settle() {
  const auto hold = std::move(autoSaveHold_);
  if (latest_->size() > fewest_ && services_.settings.get(setting::restoreOnDisplayReconnect)) {
    if (const auto layout = layouts_.load(layout_name::reconnect, displaySetKey(*latest_))) {
      restore(*layout);
    }
  }
}

void ReconnectRestore::restore(const WindowLayout& layout) {
  contents_.readNow();
  layouts_.restore(layout, services_.watcher.latest(), [&toasts = services_.toasts](std::size_t moved) {
    if (moved > 0) {
      toasts.show({"Restored " + std::to_string(moved) + " windows to your external display", "display.2"});
    }
  });
}

void RestartOffer::start() {
  if (services_.clock.systemUptime() < recentRestart) {
    waiting_ = services_.mainQueue.after(delay, [this] { offer(); });
  }
}

void RestartOffer::offer() {
  const auto layout = layouts_.load(layout_name::automatic, layouts_.displaySetup(services_.watcher.latest()));
  if (!layout || layout->entries.empty()) {
    return;
  }
  services_.workspace.activateWithOptions(services_.system.processIdentifier());
  const Alert question{
      "Put your windows back on their Spaces?",
      "Tallowin saved where " + std::to_string(layout->entries.size()) + std::string(services_.texts().beforeRestart),
      {"Restore", "Not Now"}};
  services_.alerts.show(question, lifetime_.bound([this, layout = *layout](std::optional<std::size_t> button) {
    if (button == std::size_t{0}) {
      restore(layout);
    }
  }));
}

void RestartOffer::restore(const WindowLayout& layout) {
  layouts_.restore(layout, services_.watcher.latest(), [](std::size_t /*moved*/) {});
}

}  // namespace tallowin
