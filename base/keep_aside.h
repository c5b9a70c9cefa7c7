#pragma once

#include <expected>
#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>

#include "platform/clock.h"
#include "platform/files.h"
#include "platform/log.h"
#include "platform/property_list.h"

namespace tallowin {

/// Renames a file that cannot be read as what it should be to a free, time-stamped name beside it, so that nothing is
/// lost: "preferences.json" becomes "preferences.json.unreadable-20260301T090000Z". Answers the new path.
[[nodiscard]] std::expected<std::filesystem::path, FileError> keepAside(Files& files, const Clock& clock,
                                                                        const std::filesystem::path& file);

struct KeepAsideServices {
  Files& files;
  const Clock& clock;
  Log& log;
};

/// The JSON in a file that is about to be replaced; nothing where there is no file. What is no JSON or not understood
/// is first kept aside, which is logged under `category`, and is nothing then. An error when the file cannot be read or
/// not be kept aside: it must not be replaced.
[[nodiscard]] std::expected<std::optional<PropertyList>, FileError> contentToReplace(
    KeepAsideServices services, std::string_view category, const std::filesystem::path& file,
    const std::function<bool(const PropertyList&)>& isUnderstood);

}  // namespace tallowin
