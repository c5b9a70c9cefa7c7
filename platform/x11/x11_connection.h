#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <xcb/xcb.h>

#include "base/lifetime.h"
#include "platform/descriptors.h"
#include "platform/main_queue.h"
#include "platform/x11/x11_properties.h"

namespace tallowin {

/// The atoms that the X11 binding uses: how they are called here, and by the server.
#define TALLOWIN_X11_ATOMS(X)                                         \
  X(utf8String, "UTF8_STRING")                                        \
  X(netNumberOfDesktops, "_NET_NUMBER_OF_DESKTOPS")                   \
  X(netCurrentDesktop, "_NET_CURRENT_DESKTOP")                        \
  X(netDesktopNames, "_NET_DESKTOP_NAMES")                            \
  X(netWorkarea, "_NET_WORKAREA")                                     \
  X(netSupported, "_NET_SUPPORTED")                                   \
  X(netSupportingWmCheck, "_NET_SUPPORTING_WM_CHECK")                 \
  X(netWmName, "_NET_WM_NAME")                                        \
  X(netWmDesktop, "_NET_WM_DESKTOP")                                  \
  X(netActiveWindow, "_NET_ACTIVE_WINDOW")                            \
  X(edid, "EDID")                                                     \
  X(netClientList, "_NET_CLIENT_LIST")                                \
  X(netWmPid, "_NET_WM_PID")                                          \
  X(netWmState, "_NET_WM_STATE")                                      \
  X(netWmStateHidden, "_NET_WM_STATE_HIDDEN")                         \
  X(netWmStateSticky, "_NET_WM_STATE_STICKY")                         \
  X(netWmStateAbove, "_NET_WM_STATE_ABOVE")                           \
  X(netWmStateFullscreen, "_NET_WM_STATE_FULLSCREEN")                 \
  X(netWmStateMaximizedVert, "_NET_WM_STATE_MAXIMIZED_VERT")          \
  X(netWmStateMaximizedHorz, "_NET_WM_STATE_MAXIMIZED_HORZ")          \
  X(netWmWindowType, "_NET_WM_WINDOW_TYPE")                           \
  X(netWmWindowTypeDesktop, "_NET_WM_WINDOW_TYPE_DESKTOP")            \
  X(netWmWindowTypeDock, "_NET_WM_WINDOW_TYPE_DOCK")                  \
  X(netWmWindowTypeToolbar, "_NET_WM_WINDOW_TYPE_TOOLBAR")            \
  X(netWmWindowTypeMenu, "_NET_WM_WINDOW_TYPE_MENU")                  \
  X(netWmWindowTypeUtility, "_NET_WM_WINDOW_TYPE_UTILITY")            \
  X(netWmWindowTypeSplash, "_NET_WM_WINDOW_TYPE_SPLASH")              \
  X(netWmWindowTypeDialog, "_NET_WM_WINDOW_TYPE_DIALOG")              \
  X(netWmWindowTypeDropdownMenu, "_NET_WM_WINDOW_TYPE_DROPDOWN_MENU") \
  X(netWmWindowTypePopupMenu, "_NET_WM_WINDOW_TYPE_POPUP_MENU")       \
  X(netWmWindowTypeTooltip, "_NET_WM_WINDOW_TYPE_TOOLTIP")            \
  X(netWmWindowTypeNotification, "_NET_WM_WINDOW_TYPE_NOTIFICATION")  \
  X(netWmWindowTypeCombo, "_NET_WM_WINDOW_TYPE_COMBO")                \
  X(netWmWindowTypeDnd, "_NET_WM_WINDOW_TYPE_DND")                    \
  X(netWmWindowTypeNormal, "_NET_WM_WINDOW_TYPE_NORMAL")              \
  X(netWmWindowOpacity, "_NET_WM_WINDOW_OPACITY")                     \
  X(netFrameExtents, "_NET_FRAME_EXTENTS")                            \
  X(netCloseWindow, "_NET_CLOSE_WINDOW")                              \
  X(netMoveresizeWindow, "_NET_MOVERESIZE_WINDOW")                    \
  X(netRestackWindow, "_NET_RESTACK_WINDOW")                          \
  X(wmChangeState, "WM_CHANGE_STATE")                                 \
  X(tallowinDesktopNames, "_TALLOWIN_DESKTOP_NAMES")                  \
  X(clipboard, "CLIPBOARD")                                           \
  X(targets, "TARGETS")                                               \
  X(timestamp, "TIMESTAMP")                                           \
  X(multiple, "MULTIPLE")                                             \
  X(atomPair, "ATOM_PAIR")                                            \
  X(plainTextInUTF8, "text/plain;charset=utf-8")

#define TALLOWIN_X11_ATOM(atom, name) atom,
enum class X11Atom : std::size_t { TALLOWIN_X11_ATOMS(TALLOWIN_X11_ATOM) };
#undef TALLOWIN_X11_ATOM

/// Their names, in the order of X11Atom.
#define TALLOWIN_X11_ATOM(atom, name) name,
inline constexpr auto x11AtomNames = std::to_array<std::string_view>({TALLOWIN_X11_ATOMS(TALLOWIN_X11_ATOM)});
#undef TALLOWIN_X11_ATOM

/// Gives memory that a C library allocated back to it.
struct FreeMemory {
  void operator()(void* memory) const { std::free(memory); }
};

/// Something that xcb allocated: a reply or an event.
template <typename T>
using XcbPtr = std::unique_ptr<T, FreeMemory>;

/// A connection to an X server and what is fixed for its life. Once the server is gone every reply is null, every
/// property absent, and sending does nothing. Main thread only.
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

  /// `observer` runs after every reply and every flush: both read whatever the server has sent, and events among it
  /// wait in memory with nothing more to read from the descriptor.
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

  /// What was read from the server stands for the present for as long as this number stays: nothing has been sent, no
  /// event has been handled, and the turn of the main queue has not ended since.
  [[nodiscard]] unsigned moment() const { return moment_; }
  void endMoment() { ++moment_; }

  /// Asks for a property of the given type, of which at most 64 KiB are read.
  xcb_get_property_cookie_t requestProperty(xcb_window_t window, X11Atom property, xcb_atom_t type);
  /// Waits for it.
  X11Property takeProperty(xcb_get_property_cookie_t cookie);

  /// The next event that has come; null when there is none.
  XcbPtr<xcb_generic_event_t> nextEvent();
  /// Shows all events that have come with the replies so far, which nextEvent() gives all the same.
  void peekAtEvents(const std::function<void(const xcb_generic_event_t&)>& look);

  /// Asks for the events of a window, beside those of the root window that were asked for before.
  void selectEvents(xcb_window_t window, std::uint32_t mask);

  /// Writes the window manager a message about `window` (EWMH, root window messages); flush() sends it.
  void writeToWindowManager(xcb_window_t window, X11Atom message, const std::array<std::uint32_t, 5>& data);
  /// Writes it and flushes.
  void sendToWindowManager(xcb_window_t window, X11Atom message, const std::array<std::uint32_t, 5>& data);

  /// EWMH, source indication: a direct action of the user.
  static constexpr std::uint32_t pagerSource = 2;
  /// What stands for all desktops (EWMH, _NET_WM_DESKTOP).
  static constexpr std::uint32_t allDesktops = 0xFFFFFFFF;
  /// Writes the request to move a window to the desktop of this index, or to show it on all of them; flush() sends it.
  void writeMoveToDesktop(xcb_window_t window, std::uint32_t desktop);

 private:
  X11Connection(xcb_connection_t* connection, const xcb_screen_t* screen);

  xcb_connection_t* const connection_;
  const xcb_screen_t* const screen_;
  std::array<xcb_atom_t, x11AtomNames.size()> atoms_{};
  std::function<void()> readObserver_ = [] {};
  std::deque<XcbPtr<xcb_generic_event_t>> peekedAt_;  ///< the next events
  unsigned moment_ = 0;
  std::uint32_t rootEvents_ = 0;  ///< the mask of those that were asked for
};

/// An event of the server as what its type says it is.
template <typename Event>
[[nodiscard]] const Event& x11EventAs(const xcb_generic_event_t& event) {
  return reinterpret_cast<const Event&>(event);
}

/// Its type, without the bit that tells events that another client has sent.
[[nodiscard]] inline int x11EventType(const xcb_generic_event_t& event) {
  return event.response_type & 0x7F;
}

/// The server's clock, which requests to the window manager carry. Main thread only.
class X11ServerTime {
 public:
  /// The time now, as the server stamps a property that is changed for the purpose (ICCCM, Communication with the
  /// Server). On a connection of its own, so that nobody else's events are waited behind. XCB_CURRENT_TIME when the
  /// server does not answer within a tenth of a second.
  xcb_timestamp_t now();

 private:
  bool connect();

  std::unique_ptr<X11Connection> connection_;
  xcb_window_t window_ = XCB_WINDOW_NONE;
};

/// Brings the server's events to the main thread, and notices when the server is gone. Constructed and destroyed on the
/// main thread, outside the handlers.
class X11EventPump {
 public:
  struct Handlers {
    /// Runs for every event, errors of unchecked requests included (response_type 0).
    std::function<void(const xcb_generic_event_t&)> event;
    /// Runs after the last of the events that had come together.
    std::function<void()> allHandled;
    /// Runs once, from the main queue, when the server is gone; no event comes after that.
    std::function<void()> connectionLost;
  };

  X11EventPump(X11Connection& connection, MainQueue& queue, Descriptors& descriptors, Handlers handlers);
  ~X11EventPump();
  X11EventPump(const X11EventPump&) = delete;
  X11EventPump& operator=(const X11EventPump&) = delete;

 private:
  void drain();
  void drainSoon();

  X11Connection& connection_;
  MainQueue& queue_;
  Handlers handlers_;
  Subscription watch_;
  bool isDraining_ = false;  ///< a drain waits in the queue
  Lifetime lifetime_;
};

}  // namespace tallowin
