#pragma once

#include "base/pending_alerts.h"
#include "platform/clock.h"
#include "platform/descriptors.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/messages.h"
#include "platform/ways_in.h"

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

/// What the user's bus offers, for reports.
struct BusFacts {
  bool answers = false;
  bool hasNotifications = false;  ///< a service shows notifications, or can be started
  bool hasProgram = false;        ///< this program has its name there
};

/// What the D-Bus module offers. It is a library of its own, loaded when start-up is over: with libsystemd every start
/// of the program would take half a millisecond longer.
struct DBusModule {
  /// A new desktop bus.
  DesktopBus* (*makeDesktopBus)(MainQueue& mainQueue, Descriptors& descriptors, const Clock& clock, Log& log);
  /// Has the user's bus start the program that is installed for a name, by the user's systemd where the bus asks that,
  /// and waits until it has its name, for the given time at most. False when there is no bus, no such program, or no
  /// answer in time.
  bool (*startService)(const char* name, Duration patience);
  /// What the user's bus offers. Waits a second for it at most.
  BusFacts (*busFacts)();
  /// A stream of which every line becomes an entry of the system's journal, under the program's name; negative when
  /// there is no journal. The caller closes it.
  int (*journalStream)();
};

/// The name of the module's one C function, which takes nothing and returns a const DBusModule*.
inline constexpr auto dbusModuleEntry = "tallowinDBusModule";
using DBusModuleEntry = const DBusModule* (*)();

}  // namespace tallowin
