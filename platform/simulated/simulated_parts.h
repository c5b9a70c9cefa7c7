#pragma once

#include "base/main_thread_work_queues.h"
#include "base/storage.h"
#include "platform/emulated/broadcast_notification_center.h"
#include "platform/emulated/emulated_dock.h"
#include "platform/emulated/mission_control.h"
#include "platform/folders.h"
#include "platform/simulated/journal.h"
#include "platform/simulated/preferences_file.h"
#include "platform/simulated/scenario.h"
#include "platform/simulated/simulated_accessibility.h"
#include "platform/simulated/simulated_alerts.h"
#include "platform/simulated/simulated_apple_script.h"
#include "platform/simulated/simulated_command_channel.h"
#include "platform/simulated/simulated_core_foundation.h"
#include "platform/simulated/simulated_desktop_facts.h"
#include "platform/simulated/simulated_desktop_names.h"
#include "platform/simulated/simulated_desktop_service.h"
#include "platform/simulated/simulated_displays.h"
#include "platform/simulated/simulated_events.h"
#include "platform/simulated/simulated_files.h"
#include "platform/simulated/simulated_global_hot_keys.h"
#include "platform/simulated/simulated_loader.h"
#include "platform/simulated/simulated_log.h"
#include "platform/simulated/simulated_objective_c.h"
#include "platform/simulated/simulated_pasteboard.h"
#include "platform/simulated/simulated_presentation.h"
#include "platform/simulated/simulated_processes.h"
#include "platform/simulated/simulated_screen_capture.h"
#include "platform/simulated/simulated_script_events.h"
#include "platform/simulated/simulated_spaces.h"
#include "platform/simulated/simulated_system.h"
#include "platform/simulated/simulated_tcp_listeners.h"
#include "platform/simulated/simulated_toasts.h"
#include "platform/simulated/simulated_trackpads.h"
#include "platform/simulated/simulated_url_events.h"
#include "platform/simulated/simulated_window_list.h"
#include "platform/simulated/simulated_window_server.h"
#include "platform/simulated/simulated_workspace.h"
#include "platform/simulated/window_dragging.h"

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
  SimulatedLog log;
  SimulatedFiles files;
  MainThreadWorkQueues workQueues{queue};
  Storage storage{{files, queue, workQueues, clock, log}};
  PreferencesFile preferencesFile;
  SimulatedSpaces spaces;
  EmulatedDock dock;
  MissionControl missionControl;
  WindowDragging dragging;
  SimulatedEvents events;
  SimulatedDisplays displays;
  SimulatedWindowList windowList;
  SimulatedWorkspace workspace;
  SimulatedAccessibility accessibility;
  SimulatedScreenCapture screenCapture;
  SimulatedSystem system;
  SimulatedProcesses processes;
  SimulatedAppleScript appleScript;
  SimulatedToasts toasts;
  SimulatedDesktopNames desktopNames;
  SimulatedDesktopFacts desktopFacts;
  SimulatedURLEvents urlEvents;
  SimulatedCommandChannel commandChannel;
  SimulatedScriptEvents scriptEvents;
  SimulatedDesktopService desktopService;
  SimulatedTCPListeners listeners;
  SimulatedAlerts alerts;
  SimulatedPasteboard pasteboard;
  SimulatedPresentation presentation;
  SimulatedGlobalHotKeys globalHotKeys;
  SimulatedCoreFoundation coreFoundation;
  SimulatedObjectiveC objectiveC;
  SimulatedTrackpads trackpads;
  SimulatedWindowServer windowServer;
  SimulatedLoader loader;

 private:
  void sendKeyToDock(VirtualKeyCode keyCode, std::uint64_t modifierFlags);
  void placeFiles(const Scenario& scenario);
  void connectParts();
};

}  // namespace tallowin
