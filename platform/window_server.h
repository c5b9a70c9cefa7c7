#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/accessibility.h"
#include "platform/desktop.h"
#include "platform/identifiers.h"
#include "platform/property_list.h"

namespace tallowin {

/// Symbolic hot keys of Mission Control, by their numbers in the system's table.
namespace symbolic_hot_key {
inline constexpr int moveLeft = 79;       ///< Move left a space
inline constexpr int moveRight = 81;      ///< Move right a space
inline constexpr int firstDesktop = 118;  ///< Switch to Desktop 1; those of the next desktops follow
inline constexpr int desktops = 16;       ///< so many desktops have one
}  // namespace symbolic_hot_key

/// The key combination that a symbolic hot key is bound to.
struct SymbolicHotKeyBinding {
  VirtualKeyCode keyCode = 0;
  std::uint64_t modifierFlags = 0;  ///< CGEventFlags
  bool operator==(const SymbolicHotKeyBinding&) const = default;
};

/// The number of a window-server event, as SLSRegisterConnectionNotifyProc takes it.
using WindowServerEvent = std::uint32_t;

/// Told of window-server events on whatever thread the window server uses.
using SpaceNotificationCallback = std::function<void(WindowServerEvent)>;

/// One multitouch frame: how many contacts, the mean of their normalised positions (0 to 1, origin bottom left; 0, 0
/// without contacts) and the device's time stamp in seconds.
struct TouchFrame {
  int contactCount = 0;
  float meanX = 0;
  float meanY = 0;
  double timestamp = 0;
  bool operator==(const TouchFrame&) const = default;
};

using TouchCallback = std::function<void(const TouchFrame&)>;

/// Everything that is asked of the window server, the Dock and the trackpad beyond public interfaces. No operation
/// fails loudly: where something is missing it answers its neutral result (0, false, nothing). Main thread only, except
/// CGSBridgeCopySpacesForWindow, which the contents queue calls too.
class WindowServer {
 public:
  virtual ~WindowServer() = default;

  /// The process's main connection, 0 when there is none.
  virtual ConnectionID CGSBridgeConnection() = 0;

  /// The managed-display-spaces list, a list with one dictionary for each display (core/space_provider.h says what is
  /// read from it). Nothing when it cannot be had.
  virtual std::optional<PropertyList> CGSBridgeCopyManagedDisplaySpaces() = 0;

  /// The identifier of the display that has the active menu bar, or nothing.
  virtual std::optional<std::string> CGSBridgeCopyActiveMenuBarDisplayIdentifier() = 0;

  /// The active Space, 0 when it is not known.
  virtual std::uint64_t CGSBridgeActiveSpace() = 0;

  /// Makes `callback` the one receiver of Space notifications; a later call replaces it. True only when the window
  /// server accepted every registration; the callback is kept even if not, as some may have been accepted.
  virtual bool CGSBridgeRegisterSpaceNotifications(SpaceNotificationCallback callback) = 0;

  /// What a symbolic hot key is bound to; nothing when it has no binding or it cannot be read.
  virtual std::optional<SymbolicHotKeyBinding> CGSBridgeGetSymbolicHotKey(int hotKey) = 0;

  virtual bool CGSBridgeIsSymbolicHotKeyEnabled(int hotKey) = 0;

  /// Switches a symbolic hot key on or off, for every program of the user's. True when that was done.
  virtual bool CGSBridgeSetSymbolicHotKeyEnabled(int hotKey, bool enabled) = 0;

  /// Looks at every function afresh, leaving what the other operations have remembered as it is.
  virtual CGSBridgeHealth CGSBridgeProbe() = 0;

  /// The Spaces that show a window: one for most, several for a window on all Spaces. Nothing on failure.
  virtual std::optional<std::vector<ManagedSpaceID>> CGSBridgeCopySpacesForWindow(WindowNumber window) = 0;

  /// The window number of an accessibility window element, or nothing.
  virtual std::optional<WindowNumber> CGSBridgeAXWindowID(const AXUIElement& element) = 0;

  /// Asks for `window` to be moved to `space`. True means that the request was accepted, not that the window moved: ask
  /// CGSBridgeCopySpacesForWindow again.
  virtual bool CGSBridgeMoveWindowToSpace(WindowNumber window, ManagedSpaceID space) = 0;

  /// Sends the Dock a notification, such as "com.apple.expose.awake", which opens Mission Control. True when sent.
  virtual bool CGSBridgeDockNotify(std::string_view notification) = 0;

  /// Makes `callback` the one receiver of multitouch frames, for the life of the process. Frames arrive on a thread of
  /// the platform. True when at least one device was started.
  virtual bool CGSBridgeStartTouchMonitor(TouchCallback callback) = 0;
};

}  // namespace tallowin
