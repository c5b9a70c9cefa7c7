#pragma once

#include <string>
#include <vector>

#include "core/space.h"
#include "platform/displays.h"

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

}  // namespace tallowin
