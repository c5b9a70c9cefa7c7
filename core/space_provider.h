#pragma once

#include <optional>
#include <string>

#include "core/space.h"
#include "platform/clock.h"
#include "platform/log.h"
#include "platform/window_server.h"

namespace tallowin {

/// Takes snapshots of the Spaces. Keeps no state of its own. Main thread only.
class SpaceProvider {
 public:
  SpaceProvider(WindowServer& windowServer, const Clock& clock, Log& log)
      : windowServer_(windowServer), clock_(clock), log_(log) {}

  /// The Spaces as they are now, with at least one display; nothing when the window server's list cannot be had or
  /// yields no display. Makes two calls to the window server and one pass over the list.
  [[nodiscard]] std::optional<SpaceSnapshot> snapshot() const;

  /// The displays that a managed-display-spaces list describes. Of each display the list's "Display Identifier" (text)
  /// and "Spaces" (list of dictionaries) are required; of each Space "ManagedSpaceID" (integer). "Current Space",
  /// "type", "TileLayoutManager", "uuid" and "pid" are read where they are. What lacks something required is left out;
  /// nothing at all when `list` is no list of dictionaries. When no display is called `menuBarDisplay`, the first one
  /// counts as the menu-bar display.
  [[nodiscard]] static std::optional<std::vector<DisplaySpaces>> readDisplays(const PropertyList& list,
                                                                              const std::string& menuBarDisplay);

 private:
  WindowServer& windowServer_;
  const Clock& clock_;
  Log& log_;
};

/// The id of a Space that has no UUID.
[[nodiscard]] std::string idOfManagedSpace(ManagedSpaceID managedID);

}  // namespace tallowin
