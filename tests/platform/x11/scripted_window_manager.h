#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>
#include <xcb/xcb.h>

#include "platform/geometry.h"
#include "platform/x11/x11_connection.h"

namespace tallowin {

/// A window manager that does nothing of itself: a test says which properties it sets and sees what it is asked for.
class ScriptedWindowManager {
 public:
  explicit ScriptedWindowManager(std::string_view name = "Openbox",
                                 std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT)
      : connection_(*X11Connection::open()) {
    xcb_change_window_attributes(raw(), root(), XCB_CW_EVENT_MASK, &mask);
    const auto check = createWindow();
    setWords(root(), X11Atom::netSupportingWmCheck, XCB_ATOM_WINDOW, {check});
    setWords(check, X11Atom::netSupportingWmCheck, XCB_ATOM_WINDOW, {check});
    setText(check, X11Atom::netWmName, name);
    sync();
  }

  void setDesktops(std::uint32_t count, std::uint32_t current, std::string_view names = {}) {
    setWords(root(), X11Atom::netNumberOfDesktops, XCB_ATOM_CARDINAL, {count});
    setText(root(), X11Atom::netDesktopNames, names);
    setCurrent(current);
  }

  void setCurrent(std::uint32_t current) {
    setWords(root(), X11Atom::netCurrentDesktop, XCB_ATOM_CARDINAL, {current});
    sync();
  }

  /// Claims to support these hints.
  void claim(const std::vector<X11Atom>& hints) {
    std::vector<std::uint32_t> atoms;
    for (const auto hint : hints) {
      atoms.push_back(connection_->atom(hint));
    }
    setWords(root(), X11Atom::netSupported, XCB_ATOM_ATOM, atoms);
    sync();
  }

  /// A window of some client, on a desktop.
  xcb_window_t manageWindow(std::uint32_t desktop) {
    const auto window = createWindow();
    setWords(window, X11Atom::netWmDesktop, XCB_ATOM_CARDINAL, {desktop});
    sync();
    return window;
  }

  xcb_window_t createWindow() { return createWindow(root(), 0, 0, 10, 10); }

  /// Shows a window of 100 by 100 pixels in a frame with a title bar of 20 pixels at the top, and makes it active.
  void showFramedWindow(CGPoint corner) {
    const auto frame =
        createWindow(root(), static_cast<std::int16_t>(corner.x), static_cast<std::int16_t>(corner.y), 100, 120);
    const auto window = createWindow(frame, 0, 20, 100, 100);
    xcb_map_window(raw(), window);
    xcb_map_window(raw(), frame);
    setWords(window, X11Atom::netWmDesktop, XCB_ATOM_CARDINAL, {0});
    setWords(root(), X11Atom::netActiveWindow, XCB_ATOM_WINDOW, {window});
    sync();
  }

  /// The requests that have come, as "_NET_CURRENT_DESKTOP 2 0 0 0 0".
  std::vector<std::string> takeRequests() {
    sync();
    std::vector<std::string> requests;
    while (const XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(raw())}) {
      if ((event->response_type & 0x7F) == XCB_CLIENT_MESSAGE) {
        requests.push_back(describe(reinterpret_cast<const xcb_client_message_event_t&>(*event)));
      }
    }
    return requests;
  }

  /// Waits until the server has done everything that was asked.
  void sync() { connection_->reply(xcb_get_input_focus_reply, xcb_get_input_focus(raw())); }

  xcb_connection_t* raw() { return connection_->raw(); }
  xcb_window_t root() { return connection_->root(); }

 protected:
  xcb_window_t createWindow(xcb_window_t parent, std::int16_t x, std::int16_t y, std::uint16_t width,
                            std::uint16_t height) {
    const auto window = xcb_generate_id(raw());
    xcb_create_window(raw(), XCB_COPY_FROM_PARENT, window, parent, x, y, width, height, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    return window;
  }

  void setWords(xcb_window_t window, X11Atom atom, xcb_atom_t type, const std::vector<std::uint32_t>& words) {
    xcb_change_property(raw(), XCB_PROP_MODE_REPLACE, window, connection_->atom(atom), type, 32,
                        static_cast<std::uint32_t>(words.size()), words.data());
  }

  [[nodiscard]] xcb_atom_t atom(X11Atom name) const { return connection_->atom(name); }
  X11Connection& connection() { return *connection_; }

 private:
  std::string describe(const xcb_client_message_event_t& event) {
    const auto name = connection_->reply(xcb_get_atom_name_reply, xcb_get_atom_name(raw(), event.type));
    std::string text(xcb_get_atom_name_name(name.get()),
                     static_cast<std::size_t>(xcb_get_atom_name_name_length(name.get())));
    for (const auto word : event.data.data32) {
      text += ' ';
      text += std::to_string(word);
    }
    return text;
  }

  void setText(xcb_window_t window, X11Atom atom, std::string_view text) {
    xcb_change_property(raw(), XCB_PROP_MODE_REPLACE, window, connection_->atom(atom),
                        connection_->atom(X11Atom::utf8String), 8, static_cast<std::uint32_t>(text.size()),
                        text.data());
  }

  std::unique_ptr<X11Connection> connection_;
};

}  // namespace tallowin
