#pragma once

#include <vector>

#include "platform/geometry.h"
#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_desktop_reader.h"
#include "platform/x11/x11_refusals.h"
#include "platform/x11/x11_server_time.h"
#include "platform/x11/x11_window_reader.h"

namespace tallowin {

/// What can be done to a managed window. Each operation asks the window manager and, where it says so, waits until that
/// is seen to have happened, at most about a seventh of a second. False for windows that do not exist. Main thread
/// only.
class X11WindowActions {
 public:
  X11WindowActions(X11Connection& connection, X11WindowReader& reader, X11DesktopReader& desktops,
                   X11Refusals& refusals)
      : connection_(connection), reader_(reader), desktops_(desktops), refusals_(refusals) {}

  /// True when the window is seen to be minimised.
  bool minimize(xcb_window_t window);
  /// Asks for all of them first. True when all that still exist are seen to be minimised.
  bool minimize(const std::vector<xcb_window_t>& windows);
  /// Shows a minimised window where it was. On the desktop in front that makes it active, as no other way works under
  /// every window manager. True when it is seen not to be minimised.
  bool restore(xcb_window_t window);

  /// Asks that a window be on the desktop with this index. Where the window manager loses minimised windows, such a one
  /// is shown for the move, and minimised again. `state` is the desktops as they are.
  void moveToDesktop(xcb_window_t window, std::uint32_t index, const X11DesktopState& state);

  /// Frames include the decoration. A window that is maximised or full-screen is made an ordinary one first. True when
  /// the window manager was asked.
  bool setPosition(xcb_window_t window, CGPoint position);
  bool setSize(xcb_window_t window, CGSize size);

  /// Brings a window to the front without making it active where the window manager can do that; else makes it active
  /// if it is on the desktop in front. True when it is in front, or was asked to be made active.
  bool raise(xcb_window_t window);
  /// Switches to the window's desktop, waits until that is in front, and makes the window active: in another order, one
  /// window manager or another fetches the window or only marks it. False when the desktop does not come.
  bool activate(xcb_window_t window);
  /// Asks the application to close the window, which it may refuse.
  bool close(xcb_window_t window);

 private:
  void send(xcb_window_t window, X11Atom message, const std::array<std::uint32_t, 5>& data);
  void removeState(xcb_window_t window, X11Atom first, std::optional<X11Atom> second = {});
  bool bringDesktop(const X11Window& window);
  void makeActive(xcb_window_t window);
  bool isInFront(xcb_window_t window);
  /// The window as it is once it is neither maximised nor full-screen.
  std::optional<X11Window> readOrdinary(xcb_window_t window);

  X11Connection& connection_;
  X11WindowReader& reader_;
  X11DesktopReader& desktops_;
  X11Refusals& refusals_;
  X11ServerTime time_;
};

}  // namespace tallowin
