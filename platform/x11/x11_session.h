#pragma once

#include <functional>
#include <memory>

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
#include "platform/x11/x11_global_hot_keys.h"
#include "platform/x11/x11_keyboard.h"
#include "platform/x11/x11_panel_activations.h"
#include "platform/x11/x11_pasteboard.h"
#include "platform/x11/x11_windows.h"
#include "platform/x11/x11_workspace.h"

namespace tallowin {

/// The services of a real desktop, on one connection to the X server. Main thread only: what other desktops may be
/// asked on other threads too is asked there on the main one.
class X11Session {
 private:
  const std::unique_ptr<X11Connection> connection_;
  X11Waits waits_;
  X11DesktopReader desktopReader_;
  X11WindowReader windowReader_;
  InstalledApplications installed_;
  X11Applications applications_;
  X11Refusals refusals_;
  X11WindowActions actions_;

 public:
  /// No window manager is needed, one that comes later is noticed. `onConnectionLost` runs once from the main queue
  /// when the server is gone; every operation answers its neutral result from then on, and the session may be destroyed
  /// in it. Windows of the process `self` are left out.
  X11Session(std::unique_ptr<X11Connection> connection, MainQueue& queue, const Clock& clock, Descriptors& descriptors,
             Processes& processes, KeptDesktopPlaces& places, ProcessID self, std::function<void()> onConnectionLost);

  BroadcastNotificationCenter workspaceNotifications;
  BroadcastNotificationCenter defaultNotifications;
  X11DesktopNames desktopNames;
  X11Desktop desktop;
  X11Windows windows;
  X11Displays displays;
  X11Events events;
  X11Workspace workspace;
  X11GlobalHotKeys globalHotKeys;
  X11PanelActivations panelActivations;
  X11Pasteboard pasteboard;
  X11ScreenCapture screenCapture;
  X11DesktopFacts desktopFacts;

 private:
  void handle(const xcb_generic_event_t& event);

  X11ApplicationChanges applicationChanges_;
  X11EventPump pump_;
};

}  // namespace tallowin
