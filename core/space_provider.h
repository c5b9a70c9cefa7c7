#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/space.h"
#include "platform/clock.h"
#include "platform/desktop.h"
#include "platform/log.h"

namespace tallowin {

/// Takes snapshots of the Spaces. Keeps no state of its own. Main thread only.
class SpaceProvider {
 public:
  SpaceProvider(Desktop& desktop, const Clock& clock, Log& log) : desktop_(desktop), clock_(clock), log_(log) {}

  /// The Spaces as they are now, with at least one display; nothing when there is none or the desktop does not tell,
  /// which is logged.
  [[nodiscard]] std::optional<SpaceSnapshot> snapshot() const;

  /// What the desktop tells now; nothing when it does not tell, which is logged.
  [[nodiscard]] std::optional<DesktopReading> read() const;

  /// The snapshot that a reading of this moment makes; nothing without displays.
  [[nodiscard]] std::optional<SpaceSnapshot> snapshot(const DesktopReading& reading) const;

  /// What the desktop tells, in terms of the program: with desktop numbers and identities.
  [[nodiscard]] static std::vector<DisplaySpaces> displays(const DesktopReading& reading);

 private:
  Desktop& desktop_;
  const Clock& clock_;
  Log& log_;
};

/// The id of a Space that has no UUID.
[[nodiscard]] std::string idOfManagedSpace(ManagedSpaceID managedID);

}  // namespace tallowin
