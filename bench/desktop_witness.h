#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <xcb/xcb.h>

namespace tallowin::bench {

/// An X client that knows nothing of Tallowin: it sees the root window's _NET_CURRENT_DESKTOP change, and can ask the
/// window manager for it.
class DesktopWitness {
 public:
  using Clock = std::chrono::steady_clock;

  DesktopWitness();
  ~DesktopWitness();
  DesktopWitness(const DesktopWitness&) = delete;
  DesktopWitness& operator=(const DesktopWitness&) = delete;

  /// Nothing when no window manager tells it.
  [[nodiscard]] std::optional<std::uint32_t> current() const;

  /// The index, 0 or 1, of a desktop that is not the current one.
  [[nodiscard]] std::uint32_t other() const { return current() == 0 ? 1 : 0; }

  /// When the current desktop became `index`. Waits for it; nothing when the connection is lost or nothing happens for
  /// ten seconds.
  [[nodiscard]] std::optional<Clock::time_point> waitFor(std::uint32_t index) const;

  /// Asks the window manager to switch, as pagers do.
  void ask(std::uint32_t index) const;

 private:
  xcb_connection_t* connection_;
  xcb_window_t root_ = XCB_WINDOW_NONE;
  xcb_atom_t atom_ = XCB_ATOM_NONE;
};

}  // namespace tallowin::bench
