#pragma once

#include "platform/clock.h"
#include "platform/descriptors.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/toasts.h"

namespace tallowin {

/// What the D-Bus module offers. It is a library of its own, loaded at the first message to the user: with libsystemd
/// every start of the program would take half a millisecond longer.
struct DBusModule {
  /// New notifications of the desktop.
  Toasts* (*makeToasts)(MainQueue& mainQueue, Descriptors& descriptors, const Clock& clock, Log& log);
};

/// The name of the module's one C function, which takes nothing and returns a const DBusModule*.
inline constexpr auto dbusModuleEntry = "tallowinDBusModule";
using DBusModuleEntry = const DBusModule* (*)();

}  // namespace tallowin
