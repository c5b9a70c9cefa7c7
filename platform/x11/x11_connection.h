#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <xcb/xcb.h>

#include "platform/x11/root_properties.h"
#include "platform/x11/x11_atoms.h"

namespace tallowin {

/// Gives memory that a C library allocated back to it.
struct FreeMemory {
  void operator()(void* memory) const { std::free(memory); }
};

/// Something that xcb allocated: a reply or an event.
template <typename T>
using XcbPtr = std::unique_ptr<T, FreeMemory>;

/// A connection to an X server and what is fixed for its life. Requests may be sent and replies taken on any thread.
/// Once the server is gone every reply is null, every property absent, and sending does nothing.
class X11Connection {
 public:
  /// Connects to the server that $DISPLAY names. The error is one sentence for a user.
  [[nodiscard]] static std::expected<std::unique_ptr<X11Connection>, std::string> open();

  /// Waits until the server has done everything that was asked of it.
  ~X11Connection();
  X11Connection(const X11Connection&) = delete;
  X11Connection& operator=(const X11Connection&) = delete;

  [[nodiscard]] xcb_connection_t* raw() const { return connection_; }
  /// The screen that $DISPLAY names. Its size is that at connection time.
  [[nodiscard]] const xcb_screen_t& screen() const { return *screen_; }
  [[nodiscard]] xcb_window_t root() const { return screen_->root; }
  [[nodiscard]] xcb_atom_t atom(X11Atom atom) const { return atoms_.at(static_cast<std::size_t>(atom)); }

  /// False once the server is gone.
  [[nodiscard]] bool alive() const { return xcb_connection_has_error(connection_) == 0; }

  /// Whether the server has the extension (xcb_randr_id, xcb_test_id).
  [[nodiscard]] bool hasExtension(xcb_extension_t& extension) const;
  /// The number of the extension's first event; nothing when the server lacks the extension.
  [[nodiscard]] std::optional<int> firstEvent(xcb_extension_t& extension) const;

  /// `observer` runs after every reply and every flush, on the thread that did it: both read whatever the server has
  /// sent, and events among it wait in memory with nothing more to read from the descriptor. Set before other threads
  /// start.
  void setReadObserver(std::function<void()> observer) { readObserver_ = std::move(observer); }

  /// Waits for the reply to a checked request, as in `reply(xcb_get_geometry_reply, cookie)`. Null on any error.
  template <typename Reply, typename Cookie>
  XcbPtr<Reply> reply(Reply* (*take)(xcb_connection_t*, Cookie, xcb_generic_error_t**), Cookie cookie) {
    xcb_generic_error_t* error = nullptr;
    XcbPtr<Reply> result(take(connection_, cookie, &error));
    std::free(error);
    readObserver_();
    return result;
  }

  /// Waits whether the server did what a checked request without a reply asked for.
  [[nodiscard]] bool succeeded(xcb_void_cookie_t cookie);

  /// Sends what waits to be sent. Whoever asks for something without waiting for an answer does this.
  void flush();
  /// So often was flush() called, wrapping around.
  [[nodiscard]] unsigned sendings() const { return sendings_; }

  /// Asks for a property of the given type, of which at most 64 KiB are read.
  xcb_get_property_cookie_t requestProperty(xcb_window_t window, X11Atom property, xcb_atom_t type);
  /// Waits for it.
  X11Property takeProperty(xcb_get_property_cookie_t cookie);

  /// Sends the window manager a message about `window` (EWMH, root window messages) and flushes.
  void sendToWindowManager(xcb_window_t window, X11Atom message, const std::array<std::uint32_t, 5>& data);

  /// What stands for all desktops (EWMH, _NET_WM_DESKTOP).
  static constexpr std::uint32_t allDesktops = 0xFFFFFFFF;
  /// Asks for a window to be moved to the desktop of this index, or to be shown on all of them.
  void moveToDesktop(xcb_window_t window, std::uint32_t desktop);

 private:
  X11Connection(xcb_connection_t* connection, const xcb_screen_t* screen);

  xcb_connection_t* const connection_;
  const xcb_screen_t* const screen_;
  std::array<xcb_atom_t, x11AtomNames.size()> atoms_{};
  std::function<void()> readObserver_ = [] {};
  std::atomic<unsigned> sendings_ = 0;
};

}  // namespace tallowin
