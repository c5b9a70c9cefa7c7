#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>
#include <xcb/xproto.h>

#include "platform/geometry.h"
#include "platform/identifiers.h"

namespace tallowin {

/// The widths of the decoration around a client's window, in pixels (EWMH, _NET_FRAME_EXTENTS).
struct FrameExtents {
  std::uint32_t left = 0;
  std::uint32_t right = 0;
  std::uint32_t top = 0;
  std::uint32_t bottom = 0;
  bool operator==(const FrameExtents&) const = default;
};

/// A managed window at one moment.
struct X11Window {
  xcb_window_t id = 0;  ///< X11WindowNumbers knows under which number others know it
  ProcessID pid = 0;    ///< a stand-in where the process is not known (standInPid)
  std::string title;
  std::string instance;                  ///< the first part of WM_CLASS
  std::string className;                 ///< the second part
  std::optional<std::uint32_t> desktop;  ///< as _NET_WM_DESKTOP has it
  int layer = 0;                         ///< see windowLayer
  bool hidden = false;                   ///< minimised
  bool sticky = false;                   ///< has _NET_WM_STATE_STICKY, which not every window manager keeps true
  bool above = false;                    ///< kept above others
  bool maximized = false;                ///< in at least one direction
  bool fullscreen = false;
  double alpha = 1;                     ///< 0 is invisible
  CGRect frame;                         ///< with decoration, origin at the top left of the root window
  std::optional<FrameExtents> extents;  ///< nothing when the window manager does not tell: `frame` is without them then
  bool operator==(const X11Window&) const = default;
};

/// All managed windows of other programs at one moment.
struct X11WindowSnapshot {
  std::vector<X11Window> windows;  ///< front to back, on all desktops
  xcb_window_t active = 0;         ///< the active window, also one of this program; 0 for none
  /// The desktop in front, nothing when it is not known.
  std::optional<std::uint32_t> currentDesktop;

  /// Whether a window is on the desktop in front, and not minimised.
  [[nodiscard]] bool isOnScreen(const X11Window& window) const;
  [[nodiscard]] const X11Window* find(xcb_window_t id) const;
};

}  // namespace tallowin
