#pragma once

#include <string>
#include <string_view>
#include <xcb/xcb.h>

#include "platform/x11/x11_connection.h"

namespace tallowin {

/// A client of the server with windows, as a program would have them.
class TestClient {
 public:
  TestClient() : connection_(*X11Connection::open()) {}

  /// A window that is shown, with these texts as its WM_CLASS. It need not be managed yet.
  xcb_window_t open(std::string_view className, std::string_view title = "", bool overrideRedirect = false) {
    const auto window = xcb_generate_id(raw());
    const std::uint32_t redirect = overrideRedirect ? 1 : 0;
    xcb_create_window(raw(), XCB_COPY_FROM_PARENT, window, connection_->root(), 30, 40, 200, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT, &redirect);
    std::string both(className);
    both += '\0';
    both += className;
    both += '\0';
    setText(window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, both);
    setText(window, connection_->atom(X11Atom::netWmName), connection_->atom(X11Atom::utf8String), title);
    xcb_map_window(raw(), window);
    xcb_flush(raw());
    return window;
  }

  void close(xcb_window_t window) {
    xcb_destroy_window(raw(), window);
    xcb_flush(raw());
  }

  void setText(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::string_view text) {
    xcb_change_property(raw(), XCB_PROP_MODE_REPLACE, window, property, type, 8,
                        static_cast<std::uint32_t>(text.size()), text.data());
    xcb_flush(raw());
  }

  void setWord(xcb_window_t window, X11Atom property, xcb_atom_t type, std::uint32_t word) {
    xcb_change_property(raw(), XCB_PROP_MODE_REPLACE, window, connection_->atom(property), type, 32, 1, &word);
    xcb_flush(raw());
  }

  xcb_connection_t* raw() { return connection_->raw(); }
  X11Connection& connection() { return *connection_; }

 private:
  std::unique_ptr<X11Connection> connection_;
};

}  // namespace tallowin
