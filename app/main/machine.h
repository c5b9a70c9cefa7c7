#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "app/command_line.h"
#include "app/main/lazy_dbus.h"
#include "base/log_toasts.h"
#include "base/pending_alerts.h"
#include "base/preferences.h"
#include "platform/channel/channel_folder.h"
#include "platform/desktop.h"
#include "platform/files.h"
#include "platform/linux/event_loop.h"
#include "platform/linux/lazy_images.h"
#include "platform/linux/tcp_service.h"
#include "platform/linux/unix_files.h"
#include "platform/linux/unix_processes.h"
#include "platform/linux/unix_system.h"
#include "platform/none/neutral.h"
#include "platform/platform.h"
#include "platform/ways_in.h"
#include "platform/xdg/stand_in_programs.h"
#include "presentation/ui_presentation.h"
#include "presentation/windowless.h"

namespace tallowin {

/// The services that every real machine has, whatever its desktop.
class Machine {
 public:
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
  SocketTCPListeners listeners{log};
  UnixSystem system;
  Folders folders;
  StandInPrograms processes{children, standInMachine(folders.configuration)};
  Storage storage{{files, mainQueue, &workQueues, clock, log}};
  Preferences preferences;

  /// The groups of a platform's services that its desktop has no part in. Only the resident program puts messages on
  /// the desktop, waits for answers to questions and is called by other programs; others write messages to the log.
  [[nodiscard]] SystemServices systemServices();
  [[nodiscard]] UserServices userServices(Triggers& triggers);
  [[nodiscard]] WaysIn waysIn();
  [[nodiscard]] CommandChannel& commandChannel() { return *channel_; }
  [[nodiscard]] DesktopService& desktopService();
  [[nodiscard]] bool showsWindows() const { return ui_.isShown(); }
  /// How its windows are, for the resident program; nothing for others.
  [[nodiscard]] std::optional<SetUpCheck> windowsCheck() const;

  /// For modes that run the loop: makes SIGTERM, SIGINT and SIGHUP stop it, the second time end the process. Before and
  /// without it these signals end the process at once.
  void begin();

 private:
  const Mode mode_;
  const bool isWindowless_;  ///< as the user wants it
  LogToasts logToasts_{log};
  LazyDBus dbus_{mainQueue, mainQueue, clock, log};
  NeutralAlerts neutralAlerts_;
  NeutralDesktopService neutralDesktopService_;
  NeutralURLEvents urlEvents_;
  NeutralScriptEvents scriptEvents_;
  Windowless windowless_{preferences, logToasts_, log};
  UiPresentation ui_;
  PendingAlerts pendingAlerts_{ui_, log};
  std::unique_ptr<CommandChannel> channel_;
  Subscription signals_;
};

/// The facts of a desktop, with what this machine has beside it: the message bus, notifications, starting with the
/// desktop. Main thread only.
class MachineFacts : public DesktopFacts {
 public:
  MachineFacts(DesktopFacts& desktop, const Machine& machine) : desktop_(desktop), machine_(machine) {}

  std::optional<WindowManagerFacts> windowManager() override { return desktop_.windowManager(); }
  std::vector<SetUpCheck> checks() override;

 private:
  DesktopFacts& desktop_;
  const Machine& machine_;
};

/// The user's folders on this machine.
[[nodiscard]] Folders machineFolders(const std::optional<std::filesystem::path>& home);

}  // namespace tallowin
