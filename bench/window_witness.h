#pragma once

#include <memory>
#include <string>
#include <vector>
#include <xcb/xcb.h>

namespace tallowin::bench {

/// Where a window is: the upper left corner of its content on the screen, and its desktop's index.
struct Place {
  int x = 0;
  int y = 0;
  std::uint32_t desktop = 0;
  bool operator==(const Place&) const = default;
};

/// An X client that knows nothing of Tallowin: it opens windows, sees where windows are, and can move them.
class WindowWitness {
 public:
  WindowWitness();
  ~WindowWitness();
  WindowWitness(const WindowWitness&) = delete;
  WindowWitness& operator=(const WindowWitness&) = delete;

  [[nodiscard]] bool connected() const { return xcb_connection_has_error(connection_) == 0; }

  /// A window of 200 by 150 pixels with nothing in it.
  void open(int number) const;

  /// What the window manager manages, oldest first.
  [[nodiscard]] std::vector<xcb_window_t> windows() const;

  /// The places of all of them, in one round trip for all.
  [[nodiscard]] std::vector<Place> places(const std::vector<xcb_window_t>& windows) const;

  /// The width of the frame at the left of a window's content, and its height above it.
  [[nodiscard]] std::pair<int, int> frame(xcb_window_t window) const;

  /// Asks for another place.
  void move(xcb_window_t window, const Place& place) const;

 private:
  struct Free {
    void operator()(void* memory) const { std::free(memory); }
  };
  template <typename Value>
  using Reply = std::unique_ptr<Value, Free>;

  [[nodiscard]] xcb_atom_t atom(const std::string& name) const;
  [[nodiscard]] xcb_get_property_cookie_t ask(xcb_window_t window, xcb_atom_t property) const;
  [[nodiscard]] std::vector<std::uint32_t> take(xcb_get_property_cookie_t cookie) const;

  xcb_connection_t* connection_;
  xcb_window_t root_ = XCB_WINDOW_NONE;
  xcb_atom_t clientList_ = XCB_ATOM_NONE;
  xcb_atom_t desktop_ = XCB_ATOM_NONE;
  xcb_atom_t frameExtents_ = XCB_ATOM_NONE;
};

}  // namespace tallowin::bench
