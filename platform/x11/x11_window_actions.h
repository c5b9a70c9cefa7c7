#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/geometry.h"
#include "platform/main_queue.h"
#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_desktop_reader.h"
#include "platform/x11/x11_window_reader.h"

namespace tallowin {

/// What the running window manager was seen to do and to ignore. What it says of itself (_NET_SUPPORTED) is no guide,
/// so every request is followed by a look at its effect; what was never seen to work is not waited for long again. Main
/// thread only.
class X11Refusals {
 public:
  enum class Request { minimize, restack, desktopCount };

  /// Whether the request was ignored by this window manager and has never worked.
  [[nodiscard]] bool isRefused(Request request, const X11DesktopState& desktops);
  /// How long to wait for it: a tenth of that where it is refused.
  [[nodiscard]] Duration patience(Request request, Duration usual, const X11DesktopState& desktops) {
    return isRefused(request, desktops) ? usual / 10 : usual;
  }
  /// The request was seen to work, or not to.
  void note(Request request, bool worked) { worked_[request] = worked_[request] || worked; }

 private:
  std::pair<std::uint32_t, std::string> windowManager_;
  std::map<Request, bool> worked_;  ///< nothing for what was not tried
};

/// Waits, without blocking, for what the server's events tell: that a window manager has done what it was asked for.
/// What is under way when this is destroyed is forgotten. Main thread only.
class X11Waits {
 public:
  explicit X11Waits(MainQueue& queue) : queue_(queue) {}

  /// Runs `then` once, never inside this call: with true as soon as `happened` holds, which is looked at whenever
  /// events have come, with false when it does not hold after `limit`.
  void until(std::function<bool()> happened, Duration limit, std::function<void(bool)> then);

  /// To be called when events have been handled.
  void lookAgain();

 private:
  struct Wait {
    std::function<bool()> happened;
    std::function<void(bool)> then;
    WorkItem end;
  };

  void look(int id, bool isLast);

  MainQueue& queue_;
  std::map<int, Wait> waits_;
  int latest_ = 0;
};

/// What can be done to a managed window. Each operation asks the window manager and does not wait; what has to follow
/// follows when the server's events tell that it happened, or after at most a tenth of a second. False for windows that
/// do not exist. Main thread only.
class X11WindowActions {
 public:
  X11WindowActions(X11Connection& connection, X11WindowReader& reader, X11DesktopReader& desktops,
                   X11Refusals& refusals, X11Waits& waits)
      : connection_(connection), reader_(reader), desktops_(desktops), refusals_(refusals), waits_(waits) {}

  /// False too for a window that is minimised, and where the window manager ignores the request.
  bool minimize(xcb_window_t window);
  void minimize(const std::vector<xcb_window_t>& windows);
  /// Shows a minimised window where it was. On the desktop in front that makes it active, as no other way works under
  /// every window manager. `then`, if any, runs when it is shown, or not in time.
  bool restore(xcb_window_t window, std::function<void()> then = {});

  /// Asks that a window be on the desktop with this index. Where the window manager loses minimised windows, such a one
  /// is shown for the move, and minimised again. `state` is the desktops as they are.
  void moveToDesktop(xcb_window_t window, std::uint32_t index, const X11DesktopState& state);

  /// The frame includes the decoration. A window that is maximised or full-screen is made an ordinary one first.
  bool setFrame(xcb_window_t window, const CGRect& frame);

  /// Brings a window to the front without making it active where the window manager can do that; else makes it active
  /// if it is on the desktop in front.
  bool raise(xcb_window_t window);
  /// Switches to the window's desktop, waits until that is in front, and makes the window active: in another order, one
  /// window manager or another fetches the window or only marks it. A desktop that does not come, and another window
  /// that is to be made active meanwhile, end that.
  bool activate(xcb_window_t window);
  /// Asks the application to close the window, which it may refuse.
  bool close(xcb_window_t window);

 private:
  /// Looks whether a window is as wanted, or has gone.
  [[nodiscard]] std::function<bool()> is(xcb_window_t window, std::function<bool(const X11Window&)> wanted);
  void writeState(xcb_window_t window, std::uint32_t change, X11Atom first, std::optional<X11Atom> second = {});
  [[nodiscard]] bool isHere(const X11Window& window);
  [[nodiscard]] bool isInFront(xcb_window_t window);
  void mapAgain(const X11Window& window, const std::function<void()>& then);
  void makeActive(xcb_window_t window);
  void moveResize(xcb_window_t window, const CGRect& frame);
  void moveResize(const X11Window& window, const CGRect& frame);

  X11Connection& connection_;
  X11WindowReader& reader_;
  X11DesktopReader& desktops_;
  X11Refusals& refusals_;
  X11Waits& waits_;
  X11ServerTime time_;
  int activations_ = 0;  ///< so often activate() was called
};

}  // namespace tallowin
