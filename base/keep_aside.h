#pragma once

#include <expected>
#include <filesystem>

#include "platform/clock.h"
#include "platform/files.h"

namespace tallowin {

/// Renames a file that cannot be read as what it should be to a free, time-stamped name beside it, so that nothing is
/// lost: "preferences.json" becomes "preferences.json.unreadable-20260301T090000Z". Answers the new path.
[[nodiscard]] std::expected<std::filesystem::path, FileError> keepAside(Files& files, const Clock& clock,
                                                                        const std::filesystem::path& file);

}  // namespace tallowin
