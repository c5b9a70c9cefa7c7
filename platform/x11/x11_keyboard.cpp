#include "platform/x11/x11_keyboard.h"

namespace tallowin {

xcb_get_keyboard_mapping_cookie_t requestKeyMap(X11Connection& connection) {
  const auto* setup = xcb_get_setup(connection.raw());
  const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
  return xcb_get_keyboard_mapping(connection.raw(), setup->min_keycode, count);
}

KeyMap takeKeyMap(X11Connection& connection, xcb_get_keyboard_mapping_cookie_t cookie) {
  const auto answer = connection.reply(xcb_get_keyboard_mapping_reply, cookie);
  if (!answer) {
    return {};
  }
  const auto* keysyms = xcb_get_keyboard_mapping_keysyms(answer.get());
  return {xcb_get_setup(connection.raw())->min_keycode, answer->keysyms_per_keycode,
          std::vector<Keysym>(keysyms, keysyms + xcb_get_keyboard_mapping_keysyms_length(answer.get()))};
}

}  // namespace tallowin
