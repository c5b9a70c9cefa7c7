#pragma once

#include <string>

#include "core/space.h"
#include "core/space_store.h"

namespace tallowin {

/// The desktop's number, "-" for a full-screen Space.
[[nodiscard]] std::string desktopNumberText(const Space& space);

/// The Spaces for reading, one line each: "*" for an active one, the desktop's number, the name; with several displays
/// also the display. Columns are aligned.
[[nodiscard]] std::string spaceList(const SpaceSnapshot& snapshot, const SpaceStore& store);

}  // namespace tallowin
