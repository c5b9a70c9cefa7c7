#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tallowin {

/// What the environment says about where applications are and in which language they are named.
struct XdgEnvironment {
  std::filesystem::path home;
  /// Folders of shared data, the most important first: $XDG_DATA_HOME, then those of $XDG_DATA_DIRS (XDG base directory
  /// specification). Absolute.
  std::vector<std::filesystem::path> dataFolders;
  std::vector<std::filesystem::path> programFolders;  ///< $PATH, absolute folders only
  std::vector<std::string> currentDesktops;           ///< $XDG_CURRENT_DESKTOP
  std::string locale;                                 ///< of messages, such as "de_CH.UTF-8"; empty when there is none
};

/// `variable` answers an environment variable; an empty value counts as unset, as relative folders do.
[[nodiscard]] XdgEnvironment readXdgEnvironment(
    const std::function<std::optional<std::string>(const char* name)>& variable);

/// The environment of this process: one variable, and all that counts here.
[[nodiscard]] std::optional<std::string> processVariable(const char* name);
[[nodiscard]] XdgEnvironment processXdgEnvironment();

/// The Documents folder that the text of a user-dirs.dirs names (xdg-user-dirs): absolute, or below `home`.
[[nodiscard]] std::optional<std::filesystem::path> documentsFolder(std::string_view userFolders,
                                                                   const std::filesystem::path& home);

/// The absolute path of a program that can be run: a name is looked for in `folders`, a path is taken as it stands.
[[nodiscard]] std::optional<std::filesystem::path> findProgram(std::string_view name,
                                                               const std::vector<std::filesystem::path>& folders);

/// The tags under which a localised value is looked for, best first, such as "de_CH", "de" (Desktop Entry
/// Specification, localized values for keys). Empty for no locale and for "C" and "POSIX".
[[nodiscard]] std::vector<std::string> localeTags(std::string_view locale);

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
