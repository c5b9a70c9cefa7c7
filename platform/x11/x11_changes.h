#pragma once

#include <optional>
#include <xcb/xcb.h>

#include "platform/emulated/broadcast_notification_center.h"
#include "platform/emulated/emulated_dock.h"
#include "platform/main_queue.h"
#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_desktop_names.h"
#include "platform/x11/x11_desktop_operations.h"
#include "platform/x11/x11_desktop_reader.h"
#include "platform/x11/x11_window_server.h"

namespace tallowin {

/// Turns the server's events into the notifications of a desktop that changes.
///
/// The receiver of window-server events gets 1401 when the current desktop changes and 1329 when the number or the
/// names of the desktops change or the window manager comes or goes. A changed current desktop is also told to the Dock
/// and posted as NSWorkspaceActiveSpaceDidChangeNotification; where desktops are dynamic, every change is, as there the
/// current one can become another without its index changing. Changed monitors are posted as
/// NSApplicationDidChangeScreenParametersNotification, once for each burst. Main thread only.
class X11Changes {
 public:
  static constexpr WindowServerEvent spacesChanged = 1329;
  static constexpr WindowServerEvent activeSpaceChanged = 1401;

  /// Who is told.
  struct Listeners {
    X11DesktopOperations& operations;
    X11WindowServer& windowServer;
    X11DesktopNames& desktopNames;
    EmulatedDock& dock;
    BroadcastNotificationCenter& workspaceNotifications;
    BroadcastNotificationCenter& defaultNotifications;
  };

  /// Asks the server for the events.
  X11Changes(X11Connection& connection, X11DesktopReader& desktops, MainQueue& queue, Listeners listeners);

  /// Takes an event of the server.
  void handle(const xcb_generic_event_t& event);

  /// The desktops are others than they were told to be, without an event of the server.
  void desktopsChanged();

 private:
  void propertyChanged(const xcb_property_notify_event_t& event);
  void windowManagerChanged();
  void tell(WindowServerEvent event);
  void screensChanged();

  X11Connection& connection_;
  X11DesktopReader& desktops_;
  MainQueue& queue_;
  const Listeners listeners_;
  const std::optional<int> randrEvent_;         ///< the number of RandR's first event, nothing without RandR
  xcb_window_t checkWindow_ = XCB_WINDOW_NONE;  ///< the window whose life and properties are watched
  bool dynamic_ = false;
  WorkItem screensWork_;
};

}  // namespace tallowin
