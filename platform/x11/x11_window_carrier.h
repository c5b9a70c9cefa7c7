#pragma once

#include <functional>
#include <optional>
#include <xcb/xcb.h>

#include "platform/identifiers.h"
#include "platform/main_queue.h"
#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_desktop_reader.h"

namespace tallowin {

/// Takes a window along to another desktop while its title bar is being dragged. Most window managers leave the window
/// behind, and xfwm4 leaves it unable to move ever after, when the desktop is switched plainly under it; what all of
/// them take is to show the window on all desktops first and to settle it on its new one a while after the switch. Main
/// thread only.
class X11WindowCarrier {
 public:
  /// `switchTo` switches plainly.
  X11WindowCarrier(X11Connection& connection, X11DesktopReader& desktops, MainQueue& queue,
                   std::function<void(ManagedSpaceID)> switchTo);
  /// Settles the window that is under way.
  ~X11WindowCarrier();
  X11WindowCarrier(const X11WindowCarrier&) = delete;
  X11WindowCarrier& operator=(const X11WindowCarrier&) = delete;

  /// Begins to switch to a Space with the dragged window, or with the one that is still under way. False, with nothing
  /// done, when there is neither.
  bool carryTo(ManagedSpaceID space);

 private:
  std::optional<xcb_window_t> draggedWindow();
  xcb_window_t topLevelOf(xcb_window_t window);
  void settle();
  void moveToDesktop(std::uint32_t desktop);

  X11Connection& connection_;
  X11DesktopReader& desktops_;
  MainQueue& queue_;
  const std::function<void(ManagedSpaceID)> switchTo_;

  std::optional<xcb_window_t> carried_;  ///< shown on all desktops for now
  ManagedSpaceID target_ = 0;
  WorkItem next_;
};

}  // namespace tallowin
