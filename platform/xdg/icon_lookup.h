#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include "platform/xdg/xdg_environment.h"

namespace tallowin {

/// The PNG file of an application's icon: an absolute path as it stands, a name in the "hicolor" theme, the largest
/// size up to 256 pixels first, then among the pixmaps (Icon Theme Specification; other themes and vector icons are not
/// looked at). Nothing when there is none.
[[nodiscard]] std::optional<std::filesystem::path> findIcon(std::string_view icon, const XdgEnvironment& environment);

}  // namespace tallowin
