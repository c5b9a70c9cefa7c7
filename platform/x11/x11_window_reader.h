#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>
#include <xcb/xcb.h>

#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_window.h"
#include "platform/x11/x11_window_numbers.h"

namespace tallowin {

/// Reads managed windows from the server. Windows of this process are left out, and those that the window manager does
/// not manage. Every window that it has seen has a number. A window that goes away while it is being read is left out,
/// at no cost to the others. Any thread.
class X11WindowReader {
 public:
  /// `self` is the process whose windows are left out.
  X11WindowReader(X11Connection& connection, ProcessID self);

  /// All windows, in at most three round trips however many they are: the lists, then everything about every window,
  /// then the frames of those that lie two deep in one. The order is that of the top-level windows, as what window
  /// managers say about it (_NET_CLIENT_LIST_STACKING) is wrong or late under several of them; a window whose
  /// top-level window is not found comes last.
  X11WindowSnapshot read();

  /// One window, in one round trip. Nothing when it is not managed.
  std::optional<X11Window> read(xcb_window_t window);

  /// The active window, in one round trip; 0 for none.
  xcb_window_t activeWindow();

  /// The numbers of the windows that were read. Must be told of the server's events.
  [[nodiscard]] X11WindowNumbers& numbers() { return numbers_; }

 private:
  struct Cookies;
  using Pids = std::map<std::uint32_t, std::uint32_t>;  ///< client's resource base to process

  /// Asks whether windows that have left the list are still managed.
  std::map<xcb_window_t, xcb_get_property_cookie_t> requestMissing(const std::vector<xcb_window_t>& listed);
  void takeMissing(const std::map<xcb_window_t, xcb_get_property_cookie_t>& cookies);
  Cookies request(xcb_window_t window);
  std::optional<X11Window> take(const Cookies& cookies, const Pids& pids);
  /// Which processes the owners of these windows are, where the server knows.
  std::optional<std::uint32_t> requestPids(const std::vector<xcb_window_t>& windows);
  Pids takePids(std::optional<std::uint32_t> sequence);
  [[nodiscard]] std::uint32_t baseOf(xcb_window_t window) const { return window & ~resourceMask_; }

  X11Connection& connection_;
  const ProcessID self_;
  const std::uint32_t resourceMask_;
  const bool knowsPids_;
  const std::vector<std::string> localNames_;
  X11WindowNumbers numbers_;
};

}  // namespace tallowin
