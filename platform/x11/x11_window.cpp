#include "platform/x11/x11_window.h"

#include <algorithm>

#include "platform/x11/x11_connection.h"

namespace tallowin {

bool X11WindowSnapshot::isOnScreen(const X11Window& window) const {
  return !window.hidden && (!window.desktop || window.desktop == currentDesktop ||
                            window.desktop == X11Connection::allDesktops || window.sticky);
}

const X11Window* X11WindowSnapshot::find(xcb_window_t id) const {
  const auto found = std::ranges::find(windows, id, &X11Window::id);
  return found == windows.end() ? nullptr : &*found;
}

}  // namespace tallowin
