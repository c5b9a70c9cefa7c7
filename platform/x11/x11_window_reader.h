#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>
#include <xcb/xcb.h>

#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_window.h"

namespace tallowin {

/// Reads managed windows from the server. Windows of this process are left out, and those that the window manager does
/// not manage. A window that goes away while it is being read is left out, at no cost to the others. Any thread.
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
  std::optional<X11Window> read(WindowNumber window);

  /// The active window, in one round trip; 0 for none.
  WindowNumber activeWindow();

 private:
  struct Cookies;
  using Pids = std::map<std::uint32_t, std::uint32_t>;  ///< client's resource base to process

  Cookies request(WindowNumber window);
  std::optional<X11Window> take(const Cookies& cookies, const Pids& pids);
  /// Which processes the owners of these windows are, where the server knows.
  std::optional<std::uint32_t> requestPids(const std::vector<WindowNumber>& windows);
  Pids takePids(std::optional<std::uint32_t> sequence);
  [[nodiscard]] std::uint32_t baseOf(WindowNumber window) const { return window & ~resourceMask_; }

  X11Connection& connection_;
  const ProcessID self_;
  const std::uint32_t resourceMask_;
  const bool knowsPids_;
  const std::vector<std::string> localNames_;
};

}  // namespace tallowin
