#pragma once

#include <functional>
#include <optional>
#include <string_view>

#include "platform/identifiers.h"
#include "platform/subscription.h"

namespace tallowin {

/// The system notifications that are observed, by the platform's names.
enum class NotificationName {
  NSWorkspaceActiveSpaceDidChangeNotification,
  NSWorkspaceDidWakeNotification,
  NSWorkspaceScreensDidSleepNotification,
  NSWorkspaceScreensDidWakeNotification,
  NSWorkspaceDidLaunchApplicationNotification,
  NSWorkspaceDidTerminateApplicationNotification,
  NSWorkspaceDidActivateApplicationNotification,
  NSApplicationDidChangeScreenParametersNotification,
  NSUserDefaultsDidChangeNotification,
};

/// A notification with the application that it concerns, where it concerns one.
struct Notification {
  NotificationName name;
  std::optional<ProcessID> application;
};

/// A place where notifications are observed. There are two, and a notification posted to one is not seen at the other:
/// the workspace's centre and the application's default centre. Main thread only.
class NotificationCenter {
 public:
  virtual ~NotificationCenter() = default;

  /// Runs `observer` on the main thread for every notification of this name, until the subscription is let go of.
  virtual Subscription addObserver(NotificationName name, std::function<void(const Notification&)> observer) = 0;
};

}  // namespace tallowin
