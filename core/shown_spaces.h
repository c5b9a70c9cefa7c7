#pragma once

#include <map>
#include <string>

#include "core/space.h"
#include "core/space_store.h"
#include "platform/presentation.h"

namespace tallowin {

/// A Space as the user knows it.
[[nodiscard]] ShownSpace shownSpace(const Space& space, const SpaceStore& store);

/// The active Spaces by the identifiers of their displays.
[[nodiscard]] std::map<std::string, ShownSpace> shownActiveSpaces(const SpaceSnapshot& snapshot,
                                                                  const SpaceStore& store);

}  // namespace tallowin
