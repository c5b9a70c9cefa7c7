#pragma once

#include <filesystem>
#include <optional>
#include <vector>

namespace tallowin {

/// Where it is written down what starts when a user logs in. In each list the most important folder comes first.
struct AutostartFolders {
  std::vector<std::filesystem::path> configuration;  ///< $XDG_CONFIG_HOME, then those of $XDG_CONFIG_DIRS
  std::vector<std::filesystem::path> units;          ///< of the user's systemd (systemd.unit(5))
};

/// Those of this process's user.
[[nodiscard]] AutostartFolders processAutostartFolders();

/// The file by which desktops start this program: the systemd unit that a graphical session wants, unless it is masked,
/// or the autostart entry, unless it is hidden (Desktop Application Autostart Specification). Nothing without one.
[[nodiscard]] std::optional<std::filesystem::path> autostartPlace(const AutostartFolders& folders);

}  // namespace tallowin
