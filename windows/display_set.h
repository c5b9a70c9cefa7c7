#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/space.h"
#include "platform/displays.h"
#include "windows/window_info.h"

namespace tallowin {

/// A set of connected displays, as that which window layouts are kept for.
struct DisplaySet {
  std::vector<std::string> identifiers;  ///< one per display, sorted as bytes
  bool operator==(const DisplaySet&) const = default;

  /// The identifiers joined with "+".
  [[nodiscard]] std::string key() const;
};

/// The displays that are connected now: those that the platform names, or, where it names none, those of the snapshot.
/// The platform comes first because some desktops have one set of Spaces for all their displays.
[[nodiscard]] DisplaySet connectedDisplays(Displays& displays, const SpaceSnapshot& snapshot);

/// Where the windows of one Space go before its display is unplugged.
struct SpaceEjection {
  Space from;
  Space to;
  bool operator==(const SpaceEjection&) const = default;
};

/// The display that stays: the first built-in one of the snapshot, else the one with the menu bar. Nothing only without
/// displays.
[[nodiscard]] std::optional<DisplaySpaces> homeDisplay(Displays& displays, const SpaceSnapshot& snapshot);

/// For every other display, where the windows of its ordinary Spaces go: the Space at one position to the home
/// display's ordinary Space at the same position, or to the last one when it has fewer. Empty when it has none.
[[nodiscard]] std::vector<SpaceEjection> planEjection(const SpaceSnapshot& snapshot, const DisplaySpaces& home);

/// Where a window goes before the monitor that it is on is unplugged.
struct WindowEjection {
  WindowInfo window;
  CGRect frame;
  bool operator==(const WindowEjection&) const = default;
};

/// Which windows leave their monitors for the one that stays: the first built-in one, else the primary one, else the
/// first. They keep their places in the work area, and their sizes, as far as those fit into that of the monitor that
/// stays. A window counts as on the monitor that shows most of it; one that none shows stays.
[[nodiscard]] std::vector<WindowEjection> planEjection(const std::vector<WindowInfo>& windows,
                                                       const std::vector<Monitor>& monitors);

}  // namespace tallowin
