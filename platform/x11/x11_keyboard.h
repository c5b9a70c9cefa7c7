#pragma once

#include "platform/x11/key_map.h"
#include "platform/x11/x11_connection.h"

namespace tallowin {

/// Asks for the keyboard's whole map.
[[nodiscard]] xcb_get_keyboard_mapping_cookie_t requestKeyMap(X11Connection& connection);

/// Waits for it. Empty when the server is gone.
[[nodiscard]] KeyMap takeKeyMap(X11Connection& connection, xcb_get_keyboard_mapping_cookie_t cookie);

}  // namespace tallowin
