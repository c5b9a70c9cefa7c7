#pragma once

#include <optional>

#include "core/space.h"

namespace tallowin {

/// The first Space of the snapshot with this managed id.
[[nodiscard]] std::optional<Space> spaceWithManagedID(const SpaceSnapshot& snapshot, ManagedSpaceID managedID);

}  // namespace tallowin
