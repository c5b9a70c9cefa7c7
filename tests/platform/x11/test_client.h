#pragma once

#include <string>
#include <string_view>
#include <vector>
#include <xcb/xcb.h>

#include "platform/geometry.h"
#include "platform/x11/x11_connection.h"

namespace tallowin {

/// A client of the server with windows, as a program would have them.
class TestClient {
 public:
  TestClient() : connection_(*X11Connection::open()) {}

  /// A window that is shown, with these texts as its WM_CLASS. It need not be managed yet.
  xcb_window_t open(std::string_view className, std::string_view title = "", bool overrideRedirect = false,
                    std::string_view machine = "") {
    const auto window = createWindow(root(), {30, 40}, {200, 100});
    const std::uint32_t redirect = overrideRedirect ? 1 : 0;
    xcb_change_window_attributes(raw(), window, XCB_CW_OVERRIDE_REDIRECT, &redirect);
    const auto both = std::string(className) + '\0' + std::string(className) + '\0';
    setText(window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, both);
    setText(window, X11Atom::netWmName, title);
    if (!machine.empty()) {
      setText(window, XCB_ATOM_WM_CLIENT_MACHINE, XCB_ATOM_STRING, machine);
    }
    xcb_map_window(raw(), window);
    xcb_flush(raw());
    return window;
  }

  void close(xcb_window_t window) {
    xcb_destroy_window(raw(), window);
    xcb_flush(raw());
  }

  void setText(xcb_window_t window, X11Atom property, std::string_view text) {
    setText(window, atom(property), atom(X11Atom::utf8String), text);
  }

  void setWords(xcb_window_t window, X11Atom property, xcb_atom_t type, const std::vector<std::uint32_t>& words) {
    xcb_change_property(raw(), XCB_PROP_MODE_REPLACE, window, atom(property), type, 32,
                        static_cast<std::uint32_t>(words.size()), words.data());
    xcb_flush(raw());
  }

  /// Waits until the server has done everything that was asked.
  void sync() { connection_->reply(xcb_get_input_focus_reply, xcb_get_input_focus(raw())); }

  X11Connection& connection() { return *connection_; }
  xcb_connection_t* raw() { return connection_->raw(); }
  xcb_window_t root() { return connection_->root(); }
  [[nodiscard]] xcb_atom_t atom(X11Atom name) const { return connection_->atom(name); }

 protected:
  xcb_window_t createWindow(xcb_window_t parent, CGPoint corner, CGSize size) {
    const auto window = xcb_generate_id(raw());
    xcb_create_window(raw(), XCB_COPY_FROM_PARENT, window, parent, static_cast<std::int16_t>(corner.x),
                      static_cast<std::int16_t>(corner.y), static_cast<std::uint16_t>(size.width),
                      static_cast<std::uint16_t>(size.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      0, nullptr);
    return window;
  }

 private:
  void setText(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::string_view text) {
    xcb_change_property(raw(), XCB_PROP_MODE_REPLACE, window, property, type, 8,
                        static_cast<std::uint32_t>(text.size()), text.data());
    xcb_flush(raw());
  }

  std::unique_ptr<X11Connection> connection_;
};

}  // namespace tallowin
