#pragma once

#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/clock.h"
#include "platform/descriptors.h"
#include "platform/emulated/broadcast_notification_center.h"
#include "platform/emulated/emulated_dock.h"
#include "platform/emulated/mission_control.h"
#include "platform/emulated/symbolic_hot_keys.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/processes.h"
#include "platform/x11/x11_accessibility.h"
#include "platform/x11/x11_application_changes.h"
#include "platform/x11/x11_changes.h"
#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_desktop_facts.h"
#include "platform/x11/x11_desktop_names.h"
#include "platform/x11/x11_desktop_operations.h"
#include "platform/x11/x11_desktop_reader.h"
#include "platform/x11/x11_displays.h"
#include "platform/x11/x11_event_pump.h"
#include "platform/x11/x11_events.h"
#include "platform/x11/x11_global_hot_keys.h"
#include "platform/x11/x11_pasteboard.h"
#include "platform/x11/x11_screen_capture.h"
#include "platform/x11/x11_window_list.h"
#include "platform/x11/x11_window_server.h"
#include "platform/x11/x11_windows.h"
#include "platform/x11/x11_workspace.h"

namespace tallowin {

/// The services of a real desktop, on one connection to the X server. Main thread only, as far as the services do not
/// say otherwise.
class X11Desktop {
 public:
  /// Nothing when $DISPLAY names a server that can be reached; else one line for a user.
  [[nodiscard]] static std::optional<std::string> whyNoServer();

  /// Whether there is one, and an EWMH window manager is running there.
  [[nodiscard]] static bool windowManagerPresent();

  /// Connects to the server that $DISPLAY names; no window manager is needed, one that comes later is noticed. The
  /// error is one sentence for a user. `onConnectionLost` runs once from the main queue when the server is gone; every
  /// operation answers its neutral result from then on, and the desktop may be destroyed in it.
  [[nodiscard]] static std::expected<std::unique_ptr<X11Desktop>, std::string> connect(
      MainQueue& queue, const Clock& clock, Log& log, Descriptors& descriptors, Processes& processes,
      KeptDesktopPlaces& places, std::function<void()> onConnectionLost);

  WindowServer& windowServer() { return windowServer_; }
  Events& events() { return events_; }
  Displays& displays() { return displays_; }
  Accessibility& accessibility() { return accessibility_; }
  WindowList& windowList() { return windowList_; }
  Workspace& workspace() { return workspace_; }
  GlobalHotKeys& globalHotKeys() { return globalHotKeys_; }
  Pasteboard& pasteboard() { return pasteboard_; }
  ScreenCapture& screenCapture() { return screenCapture_; }
  DesktopNames& desktopNames() { return desktopNames_; }
  SpacePlaces& spacePlaces() { return operations_; }
  DesktopFacts& desktopFacts() { return desktopFacts_; }
  NotificationCenter& workspaceNotifications() { return workspaceNotifications_; }
  NotificationCenter& defaultNotifications() { return defaultNotifications_; }

 private:
  X11Desktop(std::unique_ptr<X11Connection> connection, MainQueue& queue, const Clock& clock, Log& log,
             Descriptors& descriptors, Processes& processes, KeptDesktopPlaces& places,
             std::function<void()> onConnectionLost);

  void handle(const xcb_generic_event_t& event);
  void notifyDock(std::string_view notification);

  DockBehaviour dockBehaviour();

  const std::unique_ptr<X11Connection> connection_;
  BroadcastNotificationCenter workspaceNotifications_;
  BroadcastNotificationCenter defaultNotifications_;
  SymbolicHotKeys hotKeys_;
  X11DesktopReader desktops_;
  X11Windows windows_;
  X11DesktopOperations operations_;
  EmulatedDock dock_;
  X11Displays displays_;
  MissionControl missionControl_;
  X11WindowServer windowServer_;
  X11Events events_;
  X11Accessibility accessibility_;
  X11WindowList windowList_;
  X11Workspace workspace_;
  X11GlobalHotKeys globalHotKeys_;
  X11Pasteboard pasteboard_;
  X11ScreenCapture screenCapture_;
  X11DesktopNames desktopNames_;
  X11DesktopFacts desktopFacts_;
  X11Changes changes_;
  X11ApplicationChanges applicationChanges_;
  X11EventPump pump_;
};

}  // namespace tallowin
