#pragma once

#include <string>
#include <vector>

#include "core/space_store.h"
#include "windows/saved_space.h"
#include "windows/window_info.h"

namespace tallowin {

/// Windows for reading, one line each, Space by Space: desktop number, Space, application, title; columns are aligned.
/// Windows on Spaces that the snapshot does not have are left out.
[[nodiscard]] std::string windowTable(const std::vector<WindowInfo>& windows, const SpaceSnapshot& snapshot,
                                      const SpaceStore& store);

/// Windows for programs: "id", "pid", "bundleID" (may be null), "app", "title", "frame" ([[x, y], [width, height]],
/// origin top left), "space" (the Space's id), "number" (of the desktop, may be null) and "spaceName".
[[nodiscard]] PropertyList windowRecords(const std::vector<WindowInfo>& windows, const SpaceSnapshot& snapshot,
                                         const SpaceStore& store);

/// Saved Spaces for reading, one line each: when by local time, name, how many applications and tabs.
[[nodiscard]] std::string savedSpaceTable(const std::vector<SavedSpace>& spaces, const Clock& clock);

}  // namespace tallowin
