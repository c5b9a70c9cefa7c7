#pragma once

#include <memory>
#include <xcb/xcb.h>

#include "platform/geometry.h"
#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_desktop_reader.h"
#include "platform/x11/x11_moment.h"

namespace tallowin {

/// What nearly every command looks at, at one moment. Once the server is gone everything is empty.
struct X11View {
  X11DesktopState desktops;
  xcb_window_t activeWindow = XCB_WINDOW_NONE;
  CGSize rootSize;
  CGPoint pointer;                              ///< in the root window, origin top left
  std::uint16_t held = 0;                       ///< the buttons and modifiers (X protocol, KEYBUTMASK)
  xcb_window_t underPointer = XCB_WINDOW_NONE;  ///< a child of the root window, such as a frame
};

/// Reads all of that together, in the one round trip that the desktops alone would cost. Main thread only.
class X11Glance {
 public:
  /// Owned by whoever looks at it, and by this object until the next look.
  using View = std::shared_ptr<const X11View>;

  X11Glance(X11Connection& connection, X11DesktopReader& desktops, X11Moment& moment)
      : connection_(connection), desktops_(desktops), moment_(moment) {}

  /// How it is now. What decides anything begins with this: a snapshot of the desktops, a switch.
  View look();

  /// The latest look if nothing can have happened since (X11Moment), else a new one. Not for waiting until something
  /// happens, which nobody would be told of in the meantime.
  View present();

 private:
  X11Connection& connection_;
  X11DesktopReader& desktops_;
  X11Moment& moment_;

  View latest_;
  X11Moment::Stamp madeAt_;
};

}  // namespace tallowin
