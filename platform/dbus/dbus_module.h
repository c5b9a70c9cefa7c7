#pragma once

#include "base/alert_display.h"
#include "platform/clock.h"
#include "platform/descriptors.h"
#include "platform/desktop_service.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/toasts.h"

namespace tallowin {

/// What goes over the user's bus, on one connection: messages and questions to the user as notifications of the
/// desktop, and calls by other programs. Main thread only.
class DesktopBus {
 public:
  virtual ~DesktopBus() = default;

  [[nodiscard]] virtual Toasts& toasts() = 0;
  [[nodiscard]] virtual AlertDisplay& alerts() = 0;
  [[nodiscard]] virtual DesktopService& service() = 0;
};

/// What the D-Bus module offers. It is a library of its own, loaded when start-up is over: with libsystemd every start
/// of the program would take half a millisecond longer.
struct DBusModule {
  /// A new desktop bus.
  DesktopBus* (*makeDesktopBus)(MainQueue& mainQueue, Descriptors& descriptors, const Clock& clock, Log& log);
};

/// The name of the module's one C function, which takes nothing and returns a const DBusModule*.
inline constexpr auto dbusModuleEntry = "tallowinDBusModule";
using DBusModuleEntry = const DBusModule* (*)();

}  // namespace tallowin
