#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "base/storage.h"
#include "platform/accessibility.h"
#include "platform/alerts.h"
#include "platform/apple_script.h"
#include "platform/command_channel.h"
#include "platform/core_foundation.h"
#include "platform/desktop_facts.h"
#include "platform/desktop_names.h"
#include "platform/desktop_service.h"
#include "platform/displays.h"
#include "platform/dynamic_loader.h"
#include "platform/events.h"
#include "platform/files.h"
#include "platform/folders.h"
#include "platform/global_hot_keys.h"
#include "platform/images.h"
#include "platform/log.h"
#include "platform/notification_center.h"
#include "platform/pasteboard.h"
#include "platform/presentation.h"
#include "platform/processes.h"
#include "platform/screen_capture.h"
#include "platform/script_events.h"
#include "platform/simulated/journal.h"
#include "platform/simulated/scenario.h"
#include "platform/simulated/simulated_clock.h"
#include "platform/space_places.h"
#include "platform/system.h"
#include "platform/tcp_listener.h"
#include "platform/toasts.h"
#include "platform/url_events.h"
#include "platform/window_list.h"
#include "platform/workspace.h"

namespace tallowin {

struct SimulatedParts;

/// A whole desktop in memory. Everything that it reports is what the scenario says; everything that is done to it
/// becomes a line of the journal. It runs on any main queue, in virtual or in real time. Main thread only. There should
/// be one at a time: C functions have no context, so that those of the loader serve the desktop made last.
class SimulatedDesktop {
 public:
  /// What it is given must outlive it, the scenario included.
  SimulatedDesktop(const Scenario& scenario, MainQueue& queue, SimulatedClock& clock, Images& images, Journal& journal);
  ~SimulatedDesktop();
  SimulatedDesktop(const SimulatedDesktop&) = delete;
  SimulatedDesktop& operator=(const SimulatedDesktop&) = delete;

  /// Sets the script going; its times count from now.
  void start();

  /// Called when the process is to end: by the script's action "quit", with status 0, or because it ends itself.
  std::function<void(int status)> onQuit = [](int) {};

  /// Where the program keeps its preferences, as a JSON object. Writes the scenario's preferences there, when it has
  /// any, and is where the script's actions on preferences take place. Before start().
  void usePreferencesFile(const std::filesystem::path& path);

  Accessibility& accessibility();
  Events& events();
  Displays& displays();
  WindowList& windowList();
  Workspace& workspace();
  NotificationCenter& workspaceNotifications();
  NotificationCenter& defaultNotifications();
  ScreenCapture& screenCapture();
  System& system();
  Log& log();
  Processes& processes();
  AppleScript& appleScript();
  Toasts& toasts();
  DesktopNames& desktopNames();
  SpacePlaces& spacePlaces();
  DesktopFacts& desktopFacts();
  Alerts& alerts();
  Pasteboard& pasteboard();
  Presentation presentation();
  GlobalHotKeys& globalHotKeys();
  URLEvents& urlEvents();
  CommandChannel& commandChannel();
  ScriptEvents& scriptEvents();
  DesktopService& desktopService();
  TCPListeners& listeners();
  Files& files();
  /// What the program writes its files here with.
  Storage& storage();
  DynamicLoader& loader();
  CoreFoundation& coreFoundation();

  /// Where the simulated user's things are.
  [[nodiscard]] const Folders& folders() const;

  /// A preference of the whole system; nothing when it is not set.
  [[nodiscard]] std::optional<PropertyList> globalPreference(std::string_view key) const;

  /// What holds the services together, for the script's actions and for tests.
  [[nodiscard]] SimulatedParts& parts() { return *parts_; }

 private:
  const Scenario& scenario_;
  MainQueue& queue_;
  Journal& journal_;
  const std::unique_ptr<SimulatedParts> parts_;
  std::vector<WorkItem> script_;
};

}  // namespace tallowin
