#pragma once

#include <string>

#include "core/space_store.h"

namespace tallowin {

/// Makes new windows of an application belong on one Space and on no other.
void pinApplication(const std::string& bundleID, const Space& space, SpaceStore& store);

/// Makes them belong nowhere. False when they did already.
bool unpinApplication(const std::string& bundleID, SpaceStore& store);

}  // namespace tallowin
