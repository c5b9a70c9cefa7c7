#pragma once

#include <functional>
#include <map>
#include <utility>

#include "base/broadcaster.h"
#include "platform/notification_center.h"

namespace tallowin {

/// A notification centre that a platform posts to itself. Main thread only.
class BroadcastNotificationCenter : public NotificationCenter {
 public:
  /// The subscription may outlive the centre; then letting go of it does nothing.
  Subscription addObserver(NotificationName name, std::function<void(const Notification&)> observer) override {
    return observers_[name].subscribe(std::move(observer));
  }

  /// Tells every observer of this name, in the order in which they subscribed, before it returns. While they are told,
  /// observers may end any subscription and add observers, and may destroy the centre: one whose subscription has ended
  /// is told no more, one that was added is told from the next notification on.
  void post(const Notification& notification) {
    if (const auto found = observers_.find(notification.name); found != observers_.end()) {
      found->second.tell(notification);
    }
  }

 private:
  std::map<NotificationName, Broadcaster<const Notification&>> observers_;
};

}  // namespace tallowin
