#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "base/broadcast_notification_center.h"
#include "base/record_file.h"
#include "platform/platform.h"
#include "platform/simulated/asked_desktop.h"
#include "platform/simulated/journal.h"
#include "platform/simulated/mission_control.h"
#include "platform/simulated/scenario.h"
#include "platform/simulated/simulated_accessibility.h"
#include "platform/simulated/simulated_callers.h"
#include "platform/simulated/simulated_dock.h"
#include "platform/simulated/simulated_files.h"
#include "platform/simulated/simulated_functions.h"
#include "platform/simulated/simulated_input.h"
#include "platform/simulated/simulated_loader.h"
#include "platform/simulated/simulated_machine.h"
#include "platform/simulated/simulated_screen.h"
#include "platform/simulated/simulated_spaces.h"
#include "platform/simulated/simulated_user.h"
#include "platform/simulated/simulated_workspace.h"
#include "platform/simulated/virtual_time.h"

namespace tallowin {

/// What a simulated desktop consists of, in the order in which one part needs the other. Main thread only.
struct SimulatedParts {
  SimulatedParts(const Scenario& scenario, MainQueue& queue, SimulatedClock& clock, Images& images, Journal& journal);

  /// The file in which the simulated system keeps its Spaces, and which it replaces whenever they change.
  [[nodiscard]] static std::filesystem::path spacesFile();

  /// The user presses a symbolic hot key, if it is bound.
  void pressSymbolicHotKey(int hotKey);
  /// The user presses a key combination, which goes to whoever has registered it, else to the Dock.
  void pressKey(VirtualKeyCode keyCode, std::uint64_t modifierFlags);
  void connectDisplay(const SimulatedDisplay& display);
  void disconnectDisplay(DisplayID display);

  MainQueue& queue;
  SimulatedClock& clock;
  Journal& journal;
  DesktopState state;
  BroadcastNotificationCenter workspaceNotifications;
  BroadcastNotificationCenter defaultNotifications;
  SimulatedMachine machine;
  SimulatedFiles files;
  Storage storage{{files, queue, nullptr, clock, machine}};
  PreferencesFile preferencesFile;
  SimulatedSpaces spaces;
  SimulatedDock dock;
  MissionControl missionControl;
  Requests requests;
  AskedWindows windows;
  SimulatedAskedDesktop asked;
  SimulatedEvents events;
  SimulatedWindowList windowList;
  SimulatedWorkspace workspace;
  SimulatedAccessibility accessibility;
  SimulatedScreenCapture screenCapture;
  SimulatedDesktopNames desktopNames;
  SimulatedURLEvents urlEvents;
  SimulatedCommandChannel commandChannel;
  SimulatedScriptEvents scriptEvents;
  SimulatedDesktopService desktopService;
  SimulatedTCPListeners listeners;
  SimulatedAlerts alerts;
  SimulatedUser user;
  SimulatedGlobalHotKeys globalHotKeys;
  SimulatedCoreFoundation coreFoundation;
  SimulatedFunctions functions;
  SimulatedLoader loader;

 private:
  void sendKeyToDock(VirtualKeyCode keyCode, std::uint64_t modifierFlags);
  void placeFiles(const Scenario& scenario);
  void connectParts();
};

/// A whole desktop in memory. Everything that it reports is what the scenario says; everything that is done to it
/// becomes a line of the journal. It runs on any main queue, in virtual or in real time. Main thread only. There should
/// be one at a time: the loader's C functions serve the desktop made last.
class SimulatedDesktop {
 public:
  /// What it is given must outlive it, the scenario included.
  SimulatedDesktop(const Scenario& scenario, MainQueue& queue, SimulatedClock& clock, Images& images, Journal& journal);
  SimulatedDesktop(const SimulatedDesktop&) = delete;
  SimulatedDesktop& operator=(const SimulatedDesktop&) = delete;

  /// Sets the script going; its times count from now.
  void start();

  /// Called when the process is to end: by the script's action "quit", with status 0, or because it ends itself.
  std::function<void(int status)> onQuit = [](int) {};

  /// Where the program keeps its preferences, as a JSON object. Writes the scenario's preferences there, when it has
  /// any, and is where the script's actions on preferences take place. Before start().
  void usePreferencesFile(const std::filesystem::path& path);

  /// The desktop where the scenario says that it is asked; else null: it is driven by what follows.
  AskedDesktop* asked() { return parts_.state.isAsked ? &parts_.asked : nullptr; }
  /// The windows of one that is asked.
  Windows& windows() { return parts_.windows; }
  Accessibility& accessibility() { return parts_.accessibility; }
  Events& events() { return parts_.events; }
  Displays& displays() { return parts_.machine; }
  WindowList& windowList() { return parts_.windowList; }
  Workspace& workspace() { return parts_.workspace; }
  NotificationCenter& workspaceNotifications() { return parts_.workspaceNotifications; }
  NotificationCenter& defaultNotifications() { return parts_.defaultNotifications; }
  ScreenCapture& screenCapture() { return parts_.screenCapture; }
  System& system() { return parts_.machine; }
  Log& log() { return parts_.machine; }
  Processes& processes() { return parts_.machine; }
  AppleScript& appleScript() { return parts_.machine; }
  Toasts& toasts() { return parts_.user; }
  DesktopNames& desktopNames() { return parts_.desktopNames; }
  SpacePlaces& spacePlaces() { return parts_.spaces; }
  DesktopFacts& desktopFacts() { return parts_.machine; }
  Alerts& alerts() { return parts_.alerts; }
  GlobalHotKeys& globalHotKeys() { return parts_.globalHotKeys; }
  URLEvents& urlEvents() { return parts_.urlEvents; }
  ScriptEvents& scriptEvents() { return parts_.scriptEvents; }
  TCPListeners& listeners() { return parts_.listeners; }
  Files& files() { return parts_.files; }
  /// What the program writes its files here with.
  Storage& storage() { return parts_.storage; }
  DynamicLoader& loader() { return parts_.loader; }
  CoreFoundation& coreFoundation() { return parts_.coreFoundation; }

  /// Where the simulated user's things are.
  [[nodiscard]] const Folders& folders() const { return simulatedFolders(); }

  /// A preference of the whole system; nothing when it is not set.
  [[nodiscard]] std::optional<PropertyList> globalPreference(std::string_view key) const;

  /// What holds the services together, for the script's actions and for tests.
  [[nodiscard]] SimulatedParts& parts() { return parts_; }

 private:
  const Scenario& scenario_;
  MainQueue& queue_;
  Journal& journal_;
  SimulatedParts parts_;
  std::vector<WorkItem> script_;
};

/// A simulated desktop's part of a platform's services. All that is handed in stands on the same desktop; `driven`
/// counts only where it is driven. Work for the desktop's services is done on `queues`. Everything must outlive the
/// answer.
[[nodiscard]] DesktopServices simulatedDesktopServices(SimulatedDesktop& simulated, Desktop& desktop,
                                                       DrivenServices& driven, Windows& windows, WorkQueues& queues);

/// A simulated desktop in virtual time as the program sees it. For the rest see above.
[[nodiscard]] Platform simulatedPlatform(SimulatedDesktop& simulated, Desktop& desktop, DrivenServices& driven,
                                         Windows& windows, Preferences& preferences, Images& images, VirtualTime& time);

}  // namespace tallowin
