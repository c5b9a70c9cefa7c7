#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/identifiers.h"
#include "platform/x11/root_properties.h"

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

/// Whether the window manager writes down a minimised window's move without making it (fluxbox): what it says and where
/// the window is differ for good then, so such a window has to be shown first.
[[nodiscard]] bool losesMinimizedWindows(const X11DesktopState& state);

/// Reads the properties. A window manager counts as running when the window that the root window names names itself, as
/// the property of one that died stays on the root window (EWMH, _NET_SUPPORTING_WM_CHECK). Desktops that are known by
/// their places get the ids 1 to N here; who they are is known to X11DesktopReader.
[[nodiscard]] X11DesktopState readX11DesktopState(const X11DesktopProperties& properties);

/// The managed ids of desktops that are known by their names, for the first `count` names. A name that begins with a
/// positive decimal number below 2^31 gets that number, the first of several with the same number only. Every other one
/// gets 2^48 plus a 48-bit hash of the name, or of its position when it has none.
[[nodiscard]] std::vector<ManagedSpaceID> namedSpaceIDs(const std::vector<std::string>& names, std::size_t count);

}  // namespace tallowin
