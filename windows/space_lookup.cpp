#include "windows/space_lookup.h"

#include <algorithm>

namespace tallowin {

std::optional<Space> spaceWithManagedID(const SpaceSnapshot& snapshot, ManagedSpaceID managedID) {
  for (const auto& display : snapshot.displays) {
    const auto found = std::ranges::find(display.spaces, managedID, &Space::managedID);
    if (found != display.spaces.end()) {
      return *found;
    }
  }
  return std::nullopt;
}

}  // namespace tallowin
