#pragma once

#include <mutex>

#include "platform/emulated/emulated_dock.h"
#include "platform/emulated/symbolic_hot_keys.h"
#include "platform/window_server.h"
#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_desktop_reader.h"
#include "platform/x11/x11_windows.h"

namespace tallowin {

/// The desktops of an EWMH window manager as the Spaces of one display, "Main". A desktop's managed id belongs to its
/// place (DesktopPlaces); where desktops are dynamic it comes from the desktop's name (namedSpaceIDs). Without a window
/// manager there is no list. While a switch of our own is under way its target counts as the current Space, so that the
/// next one is counted from there however soon it comes.
class X11WindowServer : public WindowServer {
 public:
  static constexpr auto mainDisplay = "Main";

  /// `hotKeys` are kept for the process: no other program knows of them. `notifyDock` takes the Dock's notifications.
  X11WindowServer(X11Connection& connection, X11DesktopReader& desktops, SymbolicHotKeys& hotKeys, EmulatedDock& dock,
                  X11Windows& windows, std::function<void(std::string_view)> notifyDock)
      : connection_(connection),
        desktops_(desktops),
        hotKeys_(hotKeys),
        dock_(dock),
        windows_(windows),
        notifyDock_(std::move(notifyDock)) {}

  ConnectionID CGSBridgeConnection() override;
  std::optional<PropertyList> CGSBridgeCopyManagedDisplaySpaces() override;
  std::optional<std::string> CGSBridgeCopyActiveMenuBarDisplayIdentifier() override;
  std::uint64_t CGSBridgeActiveSpace() override;
  bool CGSBridgeRegisterSpaceNotifications(SpaceNotificationCallback callback) override;
  std::optional<SymbolicHotKeyBinding> CGSBridgeGetSymbolicHotKey(int hotKey) override;
  bool CGSBridgeIsSymbolicHotKeyEnabled(int hotKey) override;
  bool CGSBridgeSetSymbolicHotKeyEnabled(int hotKey, bool enabled) override;
  CGSBridgeHealth CGSBridgeProbe() override;
  /// Answers from the reading of all windows that has just been made, where there is one: then many such questions cost
  /// one round trip together, else one each.
  std::optional<std::vector<ManagedSpaceID>> CGSBridgeCopySpacesForWindow(WindowNumber window) override;
  std::optional<WindowNumber> CGSBridgeAXWindowID(const AXUIElement& element) override;
  bool CGSBridgeMoveWindowToSpace(WindowNumber window, ManagedSpaceID space) override;
  bool CGSBridgeDockNotify(std::string_view notification) override;
  bool CGSBridgeStartTouchMonitor(TouchCallback callback) override;

  /// The active Space as the list last told it.
  [[nodiscard]] std::optional<ManagedSpaceID> reportedActive() const { return reportedActive_; }

  /// Tells the registered receiver of a change. Main thread only.
  void notify(WindowServerEvent event) const;

 private:
  using WindowReading = X11Applications::Snapshot;

  X11DesktopState desktopsBeside(const WindowReading& reading);

  X11Connection& connection_;
  X11DesktopReader& desktops_;
  SymbolicHotKeys& hotKeys_;
  EmulatedDock& dock_;
  std::optional<ManagedSpaceID> reportedActive_;
  X11Windows& windows_;
  const std::function<void(std::string_view)> notifyDock_;
  SpaceNotificationCallback callback_;

  std::mutex mutex_;               ///< guards what follows
  WindowReading besideDesktops_;   ///< the windows that were read last when the desktops were
  X11DesktopState besideWindows_;  ///< those desktops
};

}  // namespace tallowin
