#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "app/command_line.h"
#include "app/main/lazy_dbus.h"
#include "app/main/lazy_desktop_service.h"
#include "app/main/lazy_notifications.h"
#include "base/file_preferences.h"
#include "base/log_toasts.h"
#include "base/pending_alerts.h"
#include "platform/channel/channel_folder.h"
#include "platform/command_channel.h"
#include "platform/folders.h"
#include "platform/linux/event_loop.h"
#include "platform/linux/lazy_images.h"
#include "platform/linux/socket_tcp_listeners.h"
#include "platform/linux/unix_system.h"
#include "platform/linux/unix_files.h"
#include "platform/linux/unix_processes.h"
#include "platform/none/neutral.h"
#include "platform/platform.h"
#include "platform/xdg/stand_in_programs.h"

namespace tallowin {

/// The services that every real machine has, whatever its desktop.
struct Machine {
  /// With `lock`, which may be null, other programs can reach this process; `display` is the X server that it works on,
  /// as DISPLAY names it, or empty. That they cannot is said in the log.
  Machine(const CommandLine& line, std::unique_ptr<InstanceLock> lock, std::string display = {});

  EventLoop mainQueue;
  ThreadWorkQueues workQueues;
  UnixFiles files{mainQueue};
  UnixProcesses children{mainQueue};
  SystemClock clock;
  SystemLog log;
  LazyImages images;
  LogToasts logToasts{log};
  LazyDBus dbus{mainQueue, mainQueue, clock, log};
  LazyNotifications notifications{dbus, log};
  LazyDesktopService lazyDesktopService{dbus, mainQueue};
  PendingAlerts pendingAlerts{notifications, log};
  NeutralAlerts neutralAlerts;
  NeutralDesktopService neutralDesktopService;
  NeutralURLEvents urlEvents;
  NeutralScriptEvents scriptEvents;
  SocketTCPListeners listeners{log};
  UnixSystem system;
  Folders folders;
  StandInPrograms processes{children, standInMachine(folders.configuration)};
  Storage storage{{files, mainQueue, workQueues, clock, log}};
  FilePreferences preferences;

  [[nodiscard]] CommandChannel& commandChannel() { return *channel_; }
  /// Where messages to the user go: to the desktop from the resident program, from commands to the log.
  [[nodiscard]] Toasts& toasts(Mode mode);
  /// How the user is asked. Only the resident program waits for answers.
  [[nodiscard]] Alerts& alerts(Mode mode);
  /// How other programs call this one: only the resident program is called.
  [[nodiscard]] DesktopService& desktopService(Mode mode);

  /// The groups of a platform's services that its desktop has no part in.
  [[nodiscard]] SystemServices systemServices();
  [[nodiscard]] UserServices userServices(Mode mode, Presentation presentation);
  [[nodiscard]] WaysIn waysIn(Mode mode);

  /// Makes SIGTERM, SIGINT and SIGHUP stop the run loop, the second time end the process. For modes that run it: before
  /// and without it these signals end the process at once.
  void stopOnSignals();

 private:
  std::unique_ptr<CommandChannel> channel_;
  Subscription signals_;
};

/// The user's folders on this machine.
[[nodiscard]] Folders machineFolders(const std::optional<std::filesystem::path>& home);

}  // namespace tallowin
