#pragma once

#include "app/main/lazy_dbus.h"
#include "base/alert_display.h"
#include "base/log_toasts.h"
#include "platform/toasts.h"

namespace tallowin {

/// Messages as notifications of the desktop and in the log, and questions as notifications, by the D-Bus module.
/// Without it messages go to the log alone and questions are not displayed. Main thread only.
class LazyNotifications : public Toasts, public AlertDisplay {
 public:
  LazyNotifications(LazyDBus& dbus, Log& log) : dbus_(dbus), logged_(log) {}

  void show(const Toast& toast) override;
  Subscription show(const Alert& alert, const std::string& howToAnswer, Answered answered) override;

 private:
  LazyDBus& dbus_;
  LogToasts logged_;
};

}  // namespace tallowin
