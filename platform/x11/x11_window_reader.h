#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>
#include <xcb/xcb.h>

#include "platform/geometry.h"
#include "platform/identifiers.h"
#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_desktop_reader.h"
#include "platform/x11/x11_window_numbers.h"

namespace tallowin {

/// A managed window at one moment.
struct X11Window {
  xcb_window_t id = 0;  ///< X11WindowNumbers knows under which number others know it
  ProcessID pid = 0;    ///< a stand-in where the process is not known (standInPid)
  std::string title;
  std::string instance;                  ///< the first part of WM_CLASS
  std::string className;                 ///< the second part
  std::optional<std::uint32_t> desktop;  ///< as _NET_WM_DESKTOP has it
  int layer = 0;                         ///< see windowLayer
  bool hidden = false;                   ///< minimised
  bool sticky = false;                   ///< has _NET_WM_STATE_STICKY, which not every window manager keeps true
  bool above = false;                    ///< kept above others
  bool maximized = false;                ///< in at least one direction
  bool fullscreen = false;
  double alpha = 1;                     ///< 0 is invisible
  CGRect frame;                         ///< with decoration, origin at the top left of the root window
  std::optional<FrameExtents> extents;  ///< nothing when the window manager does not tell: `frame` is without them then
  bool operator==(const X11Window&) const = default;
};

/// All managed windows of other programs at one moment.
struct X11WindowSnapshot {
  std::vector<X11Window> windows;  ///< front to back, on all desktops
  X11View view;                    ///< the desktops at that moment, and the active window

  /// Whether a window is on the desktop in front, and not minimised.
  [[nodiscard]] bool isOnScreen(const X11Window& window) const;
  [[nodiscard]] const X11Window* find(xcb_window_t id) const;
};

/// The Spaces that show a window with this desktop (_NET_WM_DESKTOP) and, or not, the state of being sticky. Nothing
/// for one that is not managed, or is where there is no desktop.
[[nodiscard]] std::optional<std::vector<ManagedSpaceID>> spacesShowing(const X11DesktopState& desktops,
                                                                       std::optional<std::uint32_t> desktop,
                                                                       bool sticky);

/// The place of each top-level window, the higher the farther in front.
using X11StackingPlaces = std::map<xcb_window_t, std::size_t>;

/// Reads managed windows from the server. Those of this program are left out, also where another process shows them
/// (their class is "Tallowin"), and those that the window manager does not manage. Every window that it has seen has a
/// number. A window that goes away while it is being read is left out, at no cost to the others. Main thread only.
class X11WindowReader {
 public:
  /// `self` is the process whose windows are left out.
  X11WindowReader(X11Connection& connection, X11DesktopReader& desktops, ProcessID self);

  /// All windows, in at most three round trips however many they are: the lists, then everything about every window,
  /// then the frames of those that lie two deep in one; and one more when windows have left the list. Of a window that
  /// was read before, only its place is asked for, if nothing has been told of it since. The order is that of the
  /// top-level windows, as what window managers say about it (_NET_CLIENT_LIST_STACKING) is wrong or late under several
  /// of them; a window whose top-level window is not found comes last.
  X11WindowSnapshot read();

  /// One window, in one round trip, and the desktops with it. Nothing when it is not managed.
  std::optional<X11Window> read(xcb_window_t window);

  /// The desktops, by index, of all windows, in two round trips.
  std::map<xcb_window_t, std::uint32_t> desktopsOfWindows();
  /// Those of these windows, in one; a window that has gone has none.
  std::map<xcb_window_t, std::uint32_t> desktopsOf(const std::vector<xcb_window_t>& windows);
  /// The Spaces that show a window, in one round trip; in none where that window has just been read.
  std::optional<std::vector<ManagedSpaceID>> spacesOf(xcb_window_t window);

  /// The process at the other end of the connection of a window's client, where the server knows (X-Resource 1.2).
  std::optional<ProcessID> process(xcb_window_t window);

  /// Takes an event of the server.
  void handle(const xcb_generic_event_t& event);

  /// The numbers of the windows that were read. Must be told of the server's events.
  [[nodiscard]] X11WindowNumbers& numbers() { return numbers_; }

 private:
  struct Cookies;
  struct PlaceCookies;
  /// What of a window stays until an event tells that it has changed: all but its frame.
  struct Known {
    X11Window window;
    xcb_window_t topLevel = XCB_WINDOW_NONE;
  };
  using Pids = std::map<std::uint32_t, std::uint32_t>;  ///< client's resource base to process

  [[nodiscard]] bool isOwn(const X11Window& window) const;
  void forgetUnmanaged(const std::vector<xcb_window_t>& listed);
  Cookies request(xcb_window_t window);
  X11Window take(const Cookies& cookies, const Pids& pids);
  PlaceCookies requestPlace(xcb_window_t window);
  bool takePlace(const PlaceCookies& cookies, X11Window& window);
  void learn(const std::vector<xcb_window_t>& listed, const X11StackingPlaces& places);
  /// Which processes the owners of these windows are, where the server knows.
  std::optional<std::uint32_t> requestPids(const std::vector<xcb_window_t>& windows);
  Pids takePids(std::optional<std::uint32_t> sequence);
  [[nodiscard]] std::uint32_t baseOf(xcb_window_t window) const { return window & ~resourceMask_; }

  X11Connection& connection_;
  X11DesktopReader& desktops_;
  const ProcessID self_;
  const std::uint32_t resourceMask_;
  const bool knowsPids_;
  const std::vector<std::string> localNames_;
  X11WindowNumbers numbers_;
  std::map<xcb_window_t, Known> known_;
  std::optional<X11Window> latest_;  ///< the one that was read by itself
  unsigned latestAt_ = 0;            ///< the connection's moment
};

}  // namespace tallowin
