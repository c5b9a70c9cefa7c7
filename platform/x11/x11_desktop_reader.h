#pragma once

#include <cstddef>
#include <optional>
#include <xcb/xcb.h>

#include "base/desktop_places.h"
#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_desktop_state.h"

namespace tallowin {

/// Reads the desktops from the server in one round trip, whatever their number; in two when the window manager is not
/// the one of the reading before. Main thread only.
class X11DesktopReader {
 public:
  /// `places` tells the ids of desktops that are known by their places, and is told how many there are.
  X11DesktopReader(X11Connection& connection, KeptDesktopPlaces& places)
      : connection_(connection), places_(places), likelyCheckWindow_(connection.root()) {}

  /// The desktops as they are now, or as they were while held.
  X11DesktopState read() { return stateOf(readProperties()); }

  /// What they are read from.
  X11DesktopProperties readProperties();
  [[nodiscard]] X11DesktopState stateOf(const X11DesktopProperties& properties);

  /// From when on there are `count` desktops: everybody reads the desktops as in `before` until release(), since their
  /// number, the current one and the windows on them change one after the other. Any other number releases them.
  void hold(X11DesktopState before, std::size_t count) { held_ = {std::move(before), count}; }
  void release() { held_.reset(); }

  /// The desktops with the ids 1 to N, whatever is held.
  X11DesktopState readPlainly() { return readX11DesktopState(readProperties()); }

 private:
  struct Held {
    X11DesktopState before;
    std::size_t count = 0;
  };

  struct CheckWindowCookies {
    xcb_get_property_cookie_t check;
    xcb_get_property_cookie_t name;
  };
  CheckWindowCookies requestCheckWindow(xcb_window_t window);
  void takeCheckWindow(CheckWindowCookies cookies, xcb_window_t window, X11DesktopProperties& properties);

  X11Connection& connection_;
  KeptDesktopPlaces& places_;
  std::optional<Held> held_;
  /// Where to look first for the window manager. Whether it is right is looked up every time.
  xcb_window_t likelyCheckWindow_;
};

}  // namespace tallowin
