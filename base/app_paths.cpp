#include "base/app_paths.h"

#include <algorithm>
#include <tuple>

namespace tallowin {

std::string asFileName(std::string text, std::string_view replaced) {
  std::ranges::replace_if(text, [replaced](char c) { return replaced.find(c) != std::string_view::npos; }, '-');
  return text;
}

std::filesystem::path AppPaths::made(std::filesystem::path folder) const {
  // Whoever uses a folder that could not be made finds out then.
  std::ignore = files_.createDirectory(folder, privateFolder);
  return folder;
}

std::filesystem::path AppPaths::supportDirectory() const {
  return made(supportDirectory(folders_));
}

std::filesystem::path AppPaths::supportDirectory(const Folders& folders) {
  return folders.applicationSupport / "Tallowin";
}

std::filesystem::path AppPaths::iconsDirectory() const {
  return made(supportDirectory() / "Icons");
}

std::filesystem::path AppPaths::thumbnailsDirectory() const {
  return made(supportDirectory() / "Thumbnails");
}

Folders standardFolders(const std::filesystem::path& home, const Environment& environment) {
  const auto folder = [&](const char* variable, const std::filesystem::path& otherwise) {
    const std::filesystem::path value = environment(variable).value_or("");
    return value.is_absolute() ? value : otherwise;
  };
  return {.home = home,
          .applicationSupport = folder("XDG_DATA_HOME", home / ".local/share"),
          .configuration = folder("XDG_CONFIG_HOME", home / ".config"),
          .cache = folder("XDG_CACHE_HOME", home / ".cache"),
          .documents = home / "Documents",
          .runtime = folder("XDG_RUNTIME_DIR", "")};
}

Folders foldersBelow(const std::filesystem::path& home) {
  return standardFolders(home, [](const char*) { return std::nullopt; });
}

std::filesystem::path preferencesFile(const Folders& folders) {
  return folders.configuration / "tallowin/preferences.json";
}

}  // namespace tallowin
