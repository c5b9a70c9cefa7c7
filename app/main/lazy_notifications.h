#pragma once

#include <memory>

#include "base/alert_display.h"
#include "base/log_toasts.h"
#include "platform/clock.h"
#include "platform/dbus/dbus_module.h"
#include "platform/descriptors.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/toasts.h"

namespace tallowin {

/// Messages as notifications of the desktop and in the log, and questions as notifications, by the D-Bus module, which
/// is loaded for the first one. Without it messages go to the log alone and questions are not displayed, which is said
/// once there. Main thread only.
class LazyNotifications : public Toasts, public AlertDisplay {
 public:
  LazyNotifications(MainQueue& mainQueue, Descriptors& descriptors, const Clock& clock, Log& log)
      : mainQueue_(mainQueue), descriptors_(descriptors), clock_(clock), log_(log), logged_(log) {}

  void show(const Toast& toast) override;
  Subscription show(const Alert& alert, const std::string& howToAnswer, Answered answered) override;

 private:
  /// Null without the module.
  [[nodiscard]] DesktopNotifications* notifications();
  [[nodiscard]] std::unique_ptr<DesktopNotifications> load() const;

  MainQueue& mainQueue_;
  Descriptors& descriptors_;
  const Clock& clock_;
  Log& log_;
  LogToasts logged_;
  bool tried_ = false;
  std::unique_ptr<DesktopNotifications> notifications_;
};

}  // namespace tallowin
