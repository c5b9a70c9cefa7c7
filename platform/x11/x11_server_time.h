#pragma once

#include <memory>
#include <xcb/xcb.h>

#include "platform/x11/x11_connection.h"

namespace tallowin {

/// The server's clock, which requests to the window manager carry. Main thread only.
class X11ServerTime {
 public:
  /// The time now, as the server stamps a property that is changed for the purpose (ICCCM, Communication with the
  /// Server). On a connection of its own, so that nobody else's events are waited behind. XCB_CURRENT_TIME when the
  /// server does not answer within a tenth of a second.
  xcb_timestamp_t now();

 private:
  bool connect();

  struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
  };
  std::unique_ptr<xcb_connection_t, Disconnect> connection_;
  xcb_window_t window_ = XCB_WINDOW_NONE;
};

}  // namespace tallowin
