#pragma once

#include "base/alert_display.h"
#include "platform/clock.h"
#include "platform/descriptors.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/toasts.h"

namespace tallowin {

/// Messages and questions to the user as notifications of the desktop, over one connection. Main thread only.
class DesktopNotifications {
 public:
  virtual ~DesktopNotifications() = default;

  [[nodiscard]] virtual Toasts& toasts() = 0;
  [[nodiscard]] virtual AlertDisplay& alerts() = 0;
};

/// What the D-Bus module offers. It is a library of its own, loaded at the first message to the user: with libsystemd
/// every start of the program would take half a millisecond longer.
struct DBusModule {
  /// New notifications of the desktop.
  DesktopNotifications* (*makeNotifications)(MainQueue& mainQueue, Descriptors& descriptors, const Clock& clock,
                                             Log& log);
};

/// The name of the module's one C function, which takes nothing and returns a const DBusModule*.
inline constexpr auto dbusModuleEntry = "tallowinDBusModule";
using DBusModuleEntry = const DBusModule* (*)();

}  // namespace tallowin
