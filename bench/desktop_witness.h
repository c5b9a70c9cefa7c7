#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <xcb/xcb.h>

namespace tallowin::bench {

/// An X client that knows nothing of Tallowin: it sees a property change that window managers keep and change when a
/// message of the same name asks for it, as _NET_CURRENT_DESKTOP of the root window or _NET_WM_DESKTOP of a window.
class DesktopWitness {
 public:
  using Clock = std::chrono::steady_clock;

  /// 0 is the root window.
  explicit DesktopWitness(const std::string& property = "_NET_CURRENT_DESKTOP", xcb_window_t window = 0);
  ~DesktopWitness();
  DesktopWitness(const DesktopWitness&) = delete;
  DesktopWitness& operator=(const DesktopWitness&) = delete;

  /// Nothing when no window manager tells it.
  [[nodiscard]] std::optional<std::uint32_t> current() const;

  /// The index, 0 or 1, of a desktop that is not the current one.
  [[nodiscard]] std::uint32_t other() const { return current() == 0 ? 1 : 0; }

  /// When it became `index`. Waits for it; nothing when the connection is lost or nothing happens for
  /// ten seconds.
  [[nodiscard]] std::optional<Clock::time_point> waitFor(std::uint32_t index) const;

  /// Asks the window manager for it, as pagers do.
  void ask(std::uint32_t index) const { send(window_, property_, {index}); }
  /// The same, unless it is so, and waits for it. False when it does not happen.
  [[nodiscard]] bool set(std::uint32_t index) const;
  /// Asks the window manager to make the window the active one.
  void activate() const;

 private:
  [[nodiscard]] xcb_atom_t atom(const std::string& name) const;
  void send(xcb_window_t window, xcb_atom_t message, const std::array<std::uint32_t, 5>& words) const;

  xcb_connection_t* connection_;
  xcb_window_t root_ = XCB_WINDOW_NONE;
  xcb_window_t window_ = XCB_WINDOW_NONE;
  xcb_atom_t property_ = XCB_ATOM_NONE;
};

}  // namespace tallowin::bench
