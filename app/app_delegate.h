#pragma once

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>

#include "app/command_performer.h"
#include "app/previews.h"
#include "app/program.h"
#include "app/shown_state.h"
#include "app/space_naming.h"
#include "app/space_pipeline.h"
#include "automation/automation_runner.h"
#include "automation/record_requests.h"
#include "automation/record_services.h"
#include "base/app_paths.h"
#include "base/subscriptions.h"
#include "commands/cli/request_job.h"
#include "commands/cli/space_requests.h"
#include "commands/dbus/desktop_object.h"
#include "commands/http/local_api.h"
#include "commands/scripting/scripting_bridge.h"
#include "core/program_services.h"
#include "core/space_changes.h"
#include "core/state_feed.h"
#include "platform/platform.h"
#include "triggers/shortcut_manager.h"
#include "windows/automatic_names.h"
#include "windows/window_commands.h"
#include "windows/window_services.h"

namespace tallowin {

/// Owns the services of the resident program, connects them, and reacts when the active Space changes. Main thread
/// only.
class AppDelegate {
 public:
  /// `error` receives what the user must be told beside the log.
  AppDelegate(const Platform& platform, Storage& storage, const Settings& settings, const SpaceProvider& provider,
              const LaunchOptions& options, std::ostream& error);
  AppDelegate(const AppDelegate&) = delete;
  AppDelegate& operator=(const AppDelegate&) = delete;
  /// Writes what was accepted and is unsaved; a failure is in the log.
  ~AppDelegate();

  /// Starts everything in its order.
  void applicationDidFinishLaunching();

  /// Carries out one command, on the Spaces as they are now.
  void perform(const SpaceCommand& command) { performer_.perform(command); }

  /// Performs the URL in `text`. A text that is no URL does nothing; one that is not understood is said so in a toast;
  /// one whose query names a key twice ends the process in the next turn of the main queue. Answers why it was not
  /// performed, as far as that is known at once.
  std::optional<URLFault> handleURLEvent(const std::string& text);

  /// Where the user was.
  [[nodiscard]] const SpaceHistory& history() const { return history_; }

 private:
  // The start, step by step.
  void openSettingsIfAsked();
  void presentDegradedAlert();
  void wireScripting();
  void startSettingsServices();
  void wireTriggers();
  void startWatching();
  void noteFirstSpace();
  void observeChanges();
  void beginPresentation();
  void settingsChanged();
  void runOnboardingIfNeeded();

  void snapshotChanged(const SpaceSnapshot& snapshot);
  bool switchTo(const Space& space);
  void shortcutPressed(const std::string& action);
  void performForUser(const std::vector<std::string>& words);
  void bounceBack(const std::string& spaceID);
  void willSwitch(const SpaceSnapshot& snapshot);
  [[nodiscard]] bool initiatedByUs() const;
  void endOn(const std::string& mistake);
  [[nodiscard]] RequestTable answers();
  void addShownRequests(RequestTable& table);

  const Platform platform_;
  Storage& storage_;
  const Settings& settings_;
  const LaunchOptions options_;
  std::ostream& error_;
  AppPaths paths_;
  SpaceStore store_;
  SpaceHistory history_;
  SpaceSwitcher switcher_;
  SpaceWatcher watcher_;
  const ProgramServices services_;
  SpaceChanges changes_;
  DesktopNameMirror nameMirror_;
  WindowServices windows_;
  AutomaticNames automaticNames_;
  RecordServices records_;
  AutomationRunner automation_;
  NoteFiles noteFiles_;
  SpaceNaming naming_;
  NewSpaces newSpaces_;
  PreviewService thumbnails_;
  PreviewRefresh previews_;
  SpacePipeline pipeline_;
  CommandsUnderWay underWay_;
  WindowCommands windowCommands_;
  CommandPerformer performer_;
  StateFeed feed_;
  StatusItemUpdates statusItem_;
  ShortcutManager shortcuts_;
  const RequestTable answers_;
  ScriptingBridge scripting_;
  DesktopObject desktopObject_;
  LocalAPI localAPI_;
  Subscriptions observers_;
  WorkItem settingsWindow_;
  WorkItem onboarding_;
  WorkItem ending_;
  /// When this program last started a switch, as Clock::machAbsoluteTime(), which nobody sets.
  std::optional<std::uint64_t> lastSwitch_;
};

}  // namespace tallowin
