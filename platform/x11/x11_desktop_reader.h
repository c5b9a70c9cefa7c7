#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>
#include <xcb/xcb.h>

#include "base/desktop_places.h"
#include "platform/geometry.h"
#include "platform/identifiers.h"
#include "platform/x11/x11_connection.h"

namespace tallowin {

/// Everything that one reading of the desktops is made from.
struct X11DesktopProperties {
  X11Property numberOfDesktops;
  X11Property currentDesktop;
  X11Property desktopNames;
  X11Property desktopNamesRecord;  ///< _TALLOWIN_DESKTOP_NAMES: what of the names was mirrored there
  X11Property supportingWmCheck;
  std::uint32_t checkWindow = 0;  ///< the window that the next two were read from
  X11Property checkWindowCheck;
  X11Property checkWindowName;
};

/// The desktops at one moment.
struct X11DesktopState {
  std::uint32_t checkWindow = 0;       ///< that of the running window manager, 0 when none is running
  std::string managerName;             ///< what the window manager calls itself; empty when it does not say
  bool dynamic = false;                ///< desktops come and go with use, and their numbers shift: their names stay
  std::vector<ManagedSpaceID> spaces;  ///< left to right; empty when the desktops are not known
  std::optional<std::size_t> current;  ///< index in `spaces`
  bool operator==(const X11DesktopState&) const = default;

  /// The desktop's index, nothing when there is no such Space.
  [[nodiscard]] std::optional<std::size_t> indexOf(ManagedSpaceID space) const;
  /// The current Space, nothing when it is not known.
  [[nodiscard]] std::optional<ManagedSpaceID> active() const;
};

/// Reads the properties. A window manager counts as running when the window that the root window names names itself, as
/// the property of one that died stays on the root window (EWMH, _NET_SUPPORTING_WM_CHECK). Desktops that are known by
/// their places get the ids 1 to N here; who they are is known to X11DesktopReader.
[[nodiscard]] X11DesktopState readX11DesktopState(const X11DesktopProperties& properties);

/// The managed ids of desktops that are known by their names, for the first `count` names. A name that begins with a
/// positive decimal number below 2^31 gets that number, the first of several with the same number only. Every other one
/// gets 2^48 plus a 48-bit hash of the name, or of its position when it has none.
[[nodiscard]] std::vector<ManagedSpaceID> namedSpaceIDs(const std::vector<std::string>& names, std::size_t count);

/// What nearly every command looks at, at one moment. Once the server is gone everything is empty.
struct X11View {
  X11DesktopProperties properties;  ///< what `desktops` was read from
  X11DesktopState desktops;
  xcb_window_t activeWindow = XCB_WINDOW_NONE;
  CGSize rootSize;
  CGPoint pointer;                              ///< in the root window, origin top left
  std::uint16_t held = 0;                       ///< the buttons and modifiers (X protocol, KEYBUTMASK)
  xcb_window_t underPointer = XCB_WINDOW_NONE;  ///< a child of the root window, such as a frame
};

/// Reads the desktops, and what lies beside them, from the server in one round trip, whatever their number; in two when
/// the window manager is not the one of the reading before. Main thread only.
class X11DesktopReader {
 public:
  /// `places` tells the ids of desktops that are known by their places, and is told how many there are.
  X11DesktopReader(X11Connection& connection, KeptDesktopPlaces& places)
      : connection_(connection), places_(places), likelyCheckWindow_(connection.root()) {}

  /// How it is now, or was while held. What decides anything begins with this.
  X11View look() { return take(request()); }
  /// The latest look if it stands for the present (X11Connection::moment), else a new one. Not for waiting until
  /// something happens.
  X11View present();
  /// look() in two parts, for those who have more to ask in the same round trip.
  struct CheckCookies {
    xcb_get_property_cookie_t check, name;
  };
  struct Cookies {
    unsigned moment;
    xcb_window_t likelyCheckWindow;
    xcb_get_property_cookie_t count, current, names, record, check;
    CheckCookies likely;
    xcb_get_property_cookie_t active;
    xcb_query_pointer_cookie_t pointer;
    xcb_get_geometry_cookie_t size;
  };
  Cookies request();
  X11View take(const Cookies& cookies);

  /// The desktops as they are now, or as they were while held.
  X11DesktopState read() { return look().desktops; }

  /// From when on there are `count` desktops: everybody reads the desktops as in `before` until release(), since their
  /// number, the current one and the windows on them change one after the other. Any other number releases them.
  void hold(X11DesktopState before, std::size_t count) { held_ = {std::move(before), count}; }
  void release();
  /// The desktops with the ids 1 to N, whatever is held.
  X11DesktopState readPlainly() { return readX11DesktopState(look().properties); }

 private:
  struct Held {
    X11DesktopState before;
    std::size_t count = 0;
  };

  [[nodiscard]] X11DesktopState stateOf(const X11DesktopProperties& properties);
  X11DesktopProperties takeProperties(const Cookies& cookies);
  void takeCheckWindow(const CheckCookies& cookies, X11DesktopProperties& properties);
  [[nodiscard]] CheckCookies requestCheckWindow(xcb_window_t window);

  X11Connection& connection_;
  KeptDesktopPlaces& places_;
  std::optional<Held> held_;
  /// Where to look first for the window manager. Whether it is right is looked up every time.
  xcb_window_t likelyCheckWindow_;
  X11View latest_;
  std::optional<unsigned> readAt_;  ///< the connection's moment
};

/// Whether an EWMH window manager is running on the server.
[[nodiscard]] bool isManaged(X11Connection& connection);

}  // namespace tallowin
