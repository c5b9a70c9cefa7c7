#pragma once

#include <atomic>
#include <xcb/xcb.h>

#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_desktop_state.h"

namespace tallowin {

/// Reads the desktops from the server in one round trip, whatever their number; in two when the window manager is not
/// the one of the reading before. Any thread.
class X11DesktopReader {
 public:
  explicit X11DesktopReader(X11Connection& connection)
      : connection_(connection), likelyCheckWindow_(connection.root()) {}

  /// The desktops as they are now.
  X11DesktopState read() { return readX11DesktopState(readProperties()); }

  /// What they are read from.
  X11DesktopProperties readProperties();

 private:
  struct CheckWindowCookies {
    xcb_get_property_cookie_t check;
    xcb_get_property_cookie_t name;
  };
  CheckWindowCookies requestCheckWindow(xcb_window_t window);
  void takeCheckWindow(CheckWindowCookies cookies, xcb_window_t window, X11DesktopProperties& properties);

  X11Connection& connection_;
  /// Where to look first for the window manager. Whether it is right is looked up every time.
  std::atomic<xcb_window_t> likelyCheckWindow_;
};

}  // namespace tallowin
