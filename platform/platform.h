#pragma once

#include "platform/clock.h"
#include "platform/desktop.h"
#include "platform/displays.h"
#include "platform/driven_services.h"
#include "platform/events.h"
#include "platform/files.h"
#include "platform/global_hot_keys.h"
#include "platform/images.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/messages.h"
#include "platform/notification_center.h"
#include "platform/pasteboard.h"
#include "platform/processes.h"
#include "platform/system.h"
#include "platform/ways_in.h"
#include "platform/windows.h"
#include "platform/workspace.h"

namespace tallowin {

// Of folders above this one, which the platforms hand on.
class Preferences;
class Presentation;
class Triggers;

/// What a machine has, whatever its desktop.
struct SystemServices {
  Files& files;
  const Folders& folders;
  Preferences& preferences;
  Processes& processes;
  System& system;
  Images& images;
  MainQueue& mainQueue;
  WorkQueues& workQueues;
  RunLoop& runLoop;
  Clock& clock;
  Log& log;
};

/// What a desktop has.
struct DesktopServices {
  Desktop& desktop;
  AskedDesktop* asked;     ///< the same, where it does what it is asked for; else null
  DrivenServices* driven;  ///< what it is driven by, where it cannot be asked; else null
  Windows& windows;
  DesktopNames& desktopNames;
  SpacePlaces& spacePlaces;
  Events& events;
  Displays& displays;
  Workspace& workspace;
  NotificationCenter& workspaceNotifications;  ///< NSWorkspace's own notification centre
  NotificationCenter& defaultNotifications;    ///< the application's default notification centre
  ScreenCapture& screenCapture;
  GlobalHotKeys& globalHotKeys;
  Pasteboard& pasteboard;
  AppleScript& appleScript;
  DesktopFacts& desktopFacts;
  WorkQueues& desktopQueues;  ///< for work that asks the services of the desktop; where they have one thread, on it

  [[nodiscard]] DesktopKind desktopKind() const { return asked != nullptr ? DesktopKind::asked : DesktopKind::driven; }
};

/// How the user is spoken to.
struct UserServices {
  Toasts& toasts;
  Alerts& alerts;
  Presentation& presentation;
  Triggers& triggers;
};

/// How other programs speak to this one.
struct WaysIn {
  URLEvents& urlEvents;
  CommandChannel& commandChannel;
  ScriptEvents& scriptEvents;
  DesktopService& desktopService;
  TCPListeners& listeners;
};

/// The services of one platform, handed to whoever puts the program together. Everybody else is constructed with just
/// the services that they use. The services outlive everything that was given them.
struct Platform : SystemServices, DesktopServices, UserServices, WaysIn {};

}  // namespace tallowin
