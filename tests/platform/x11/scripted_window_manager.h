#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tests/platform/x11/test_client.h"

namespace tallowin {

/// A window manager that does nothing of itself: a test says which properties it sets and sees what it is asked for.
class ScriptedWindowManager : public TestClient {
 public:
  explicit ScriptedWindowManager(std::string_view name = "Openbox",
                                 std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT) {
    xcb_change_window_attributes(raw(), root(), XCB_CW_EVENT_MASK, &mask);
    const auto check = createWindow(root(), {}, {10, 10});
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
      atoms.push_back(atom(hint));
    }
    setWords(root(), X11Atom::netSupported, XCB_ATOM_ATOM, atoms);
    sync();
  }

  /// A window of some client, on a desktop.
  xcb_window_t manageWindow(std::uint32_t desktop) {
    const auto window = createWindow(root(), {}, {10, 10});
    setWords(window, X11Atom::netWmDesktop, XCB_ATOM_CARDINAL, {desktop});
    sync();
    return window;
  }

  /// Shows a window of 100 by 100 pixels in a frame with a title bar of 20 pixels at the top, and makes it active.
  void showFramedWindow(CGPoint corner) {
    const auto frame = createWindow(root(), corner, {100, 120});
    const auto window = createWindow(frame, {0, 20}, {100, 100});
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

 private:
  std::string describe(const xcb_client_message_event_t& event) {
    const auto name = connection().reply(xcb_get_atom_name_reply, xcb_get_atom_name(raw(), event.type));
    std::string text(xcb_get_atom_name_name(name.get()),
                     static_cast<std::size_t>(xcb_get_atom_name_name_length(name.get())));
    for (const auto word : event.data.data32) {
      text += ' ';
      text += std::to_string(word);
    }
    return text;
  }
};

}  // namespace tallowin
