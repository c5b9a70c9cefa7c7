#include "base/broadcast_notification_center.h"

#include <utility>

namespace tallowin {

Subscription BroadcastNotificationCenter::addObserver(NotificationName name,
                                                      std::function<void(const Notification&)> observer) {
  return observers_[name].subscribe(std::move(observer));
}

void BroadcastNotificationCenter::post(const Notification& notification) {
  if (const auto found = observers_.find(notification.name); found != observers_.end()) {
    found->second.tell(notification);
  }
}

}  // namespace tallowin
