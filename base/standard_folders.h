#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/folders.h"

namespace tallowin {

/// The value of an environment variable, or nothing.
using Environment = std::function<std::optional<std::string>(const char* name)>;

/// The user's folders by the XDG base directory specification, in which an empty or relative variable counts as unset.
[[nodiscard]] Folders standardFolders(const std::filesystem::path& home, const Environment& environment);

/// All folders below `home`, whatever the environment says.
[[nodiscard]] Folders foldersBelow(const std::filesystem::path& home);

/// The program's preferences file.
[[nodiscard]] std::filesystem::path preferencesFile(const Folders& folders);

}  // namespace tallowin
