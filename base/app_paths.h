#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/files.h"

namespace tallowin {

/// The text as the name of one file, which leads to no other folder: each of these characters becomes "-".
[[nodiscard]] std::string asFileName(std::string text, std::string_view replaced = "/");

/// The program's data folders. Each is made with its parents on every access; a failure to make it leaves the path as
/// it is and is not reported. Main thread only.
class AppPaths {
 public:
  AppPaths(Files& files, const Folders& folders) : files_(files), folders_(folders) {}

  [[nodiscard]] std::filesystem::path supportDirectory() const;
  /// The same, whether it is there or not.
  [[nodiscard]] static std::filesystem::path supportDirectory(const Folders& folders);
  [[nodiscard]] std::filesystem::path iconsDirectory() const;
  [[nodiscard]] std::filesystem::path thumbnailsDirectory() const;

 private:
  [[nodiscard]] std::filesystem::path made(std::filesystem::path folder) const;

  Files& files_;
  const Folders& folders_;
};

/// The value of an environment variable, or nothing.
using Environment = std::function<std::optional<std::string>(const char* name)>;

/// The user's folders by the XDG base directory specification, in which an empty or relative variable counts as unset.
[[nodiscard]] Folders standardFolders(const std::filesystem::path& home, const Environment& environment);

/// All folders below `home`, whatever the environment says.
[[nodiscard]] Folders foldersBelow(const std::filesystem::path& home);

/// The program's preferences file.
[[nodiscard]] std::filesystem::path preferencesFile(const Folders& folders);

}  // namespace tallowin
