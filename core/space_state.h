#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/space.h"
#include "core/space_store.h"
#include "platform/property_list.h"

namespace tallowin {

/// The names of the applications that have windows on a Space, front to back.
using AppNames = std::function<std::vector<std::string>(const Space&)>;

/// What other programs are told of one Space: "id", "name", "hasCustomName", "display", "isActive", "isFullscreen",
/// "symbol", "apps", and "number", "color" and "note", which may be null.
[[nodiscard]] PropertyList spaceRecord(const Space& space, const SpaceStore& store, const AppNames& apps);

/// What they are told of all: "version" 1, "updatedAt", "current" (the id of the active Space, or null) and "spaces".
[[nodiscard]] PropertyList stateRecord(const SpaceSnapshot& snapshot, const SpaceStore& store, const AppNames& apps,
                                       Date updatedAt);

}  // namespace tallowin
