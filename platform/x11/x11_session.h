#pragma once

#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/broadcast_notification_center.h"
#include "platform/clock.h"
#include "platform/descriptors.h"
#include "platform/main_queue.h"
#include "platform/processes.h"
#include "platform/x11/x11_applications.h"
#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_desktop.h"
#include "platform/x11/x11_desktop_facts.h"
#include "platform/x11/x11_desktop_names.h"
#include "platform/x11/x11_desktop_reader.h"
#include "platform/x11/x11_displays.h"
#include "platform/x11/x11_events.h"
#include "platform/x11/x11_global_hot_keys.h"
#include "platform/x11/x11_launcher.h"
#include "platform/x11/x11_pasteboard.h"
#include "platform/x11/x11_screen_capture.h"
#include "platform/x11/x11_windows.h"
#include "platform/x11/x11_workspace.h"

namespace tallowin {

/// The services of a real desktop, on one connection to the X server. Main thread only: what other desktops may be
/// asked on other threads too is asked there on the main one.
class X11Session {
 public:
  /// Nothing when $DISPLAY names a server that can be reached; else one line for a user.
  [[nodiscard]] static std::optional<std::string> whyNoServer();

  /// Whether there is one, and an EWMH window manager is running there.
  [[nodiscard]] static bool windowManagerPresent();
  [[nodiscard]] static bool windowManagerPresent(X11Connection& connection);

  /// No window manager is needed, one that comes later is noticed. `onConnectionLost` runs once from the main queue
  /// when the server is gone; every operation answers its neutral result from then on, and the session may be destroyed
  /// in it. Windows of the process `self` are left out.
  X11Session(std::unique_ptr<X11Connection> connection, MainQueue& queue, const Clock& clock, Descriptors& descriptors,
             Processes& processes, KeptDesktopPlaces& places, ProcessID self, std::function<void()> onConnectionLost);

  /// The same on a new connection to the server that $DISPLAY names. The error is one sentence for a user.
  [[nodiscard]] static std::expected<std::unique_ptr<X11Session>, std::string> connect(
      MainQueue& queue, const Clock& clock, Descriptors& descriptors, Processes& processes, KeptDesktopPlaces& places,
      ProcessID self, std::function<void()> onConnectionLost);

  X11Desktop& desktop() { return desktop_; }
  Windows& windows() { return windows_; }
  Events& events() { return events_; }
  Displays& displays() { return displays_; }
  Workspace& workspace() { return workspace_; }
  GlobalHotKeys& globalHotKeys() { return globalHotKeys_; }
  Pasteboard& pasteboard() { return pasteboard_; }
  ScreenCapture& screenCapture() { return screenCapture_; }
  DesktopNames& desktopNames() { return desktopNames_; }
  DesktopFacts& desktopFacts() { return desktopFacts_; }
  NotificationCenter& workspaceNotifications() { return workspaceNotifications_; }
  NotificationCenter& defaultNotifications() { return defaultNotifications_; }

 private:
  void handle(const xcb_generic_event_t& event);

  const std::unique_ptr<X11Connection> connection_;
  BroadcastNotificationCenter workspaceNotifications_;
  BroadcastNotificationCenter defaultNotifications_;
  X11Waits waits_;
  X11DesktopReader desktopReader_;
  X11WindowReader windowReader_;
  InstalledApplications installed_;
  X11Applications applications_;
  X11Refusals refusals_;
  X11WindowActions actions_;
  X11Launcher launcher_;
  X11DesktopNames desktopNames_;
  X11Desktop desktop_;
  X11Windows windows_;
  X11Displays displays_;
  X11Events events_;
  X11Workspace workspace_;
  X11GlobalHotKeys globalHotKeys_;
  X11Pasteboard pasteboard_;
  X11ScreenCapture screenCapture_;
  X11DesktopFacts desktopFacts_;
  X11ApplicationChanges applicationChanges_;
  X11EventPump pump_;
};

}  // namespace tallowin
