#include "windows/display_set_watch.h"

#include <utility>

namespace tallowin {

void DisplaySetWatch::start() {
  observer_ =
      services_.defaultNotifications.addObserver(NotificationName::NSApplicationDidChangeScreenParametersNotification,
                                                 [this](const Notification& /*notification*/) { look(); });
  look();
}

void DisplaySetWatch::look() {
  auto now = connectedDisplays(services_.displays, services_.snapshot());
  if (now.identifiers.empty() || now == latest_) {
    return;
  }
  const bool first = !latest_;
  latest_ = std::move(now);
  if (first) {
    settled_ = latest_;
    return;
  }
  settling_ = services_.mainQueue.after(settleTime, [this] { settle(); });
  if (onChange) {
    onChange();
  }
}

void DisplaySetWatch::settle() {
  settling_.cancel();
  const auto before = std::exchange(settled_, latest_);
  if (onSettled) {
    onSettled(*before, *latest_);
  }
}

}  // namespace tallowin
