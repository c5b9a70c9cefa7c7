#pragma once

#include <filesystem>
#include <functional>
#include <optional>

#include "platform/descriptors.h"
#include "platform/files.h"

namespace tallowin {

/// Watches a name by inotify(7), as Files::watch says.
[[nodiscard]] std::optional<Subscription> watchFile(Descriptors& descriptors, const std::filesystem::path& path,
                                                    std::function<void(FileEvents)> onEvent);

}  // namespace tallowin
