#include "base/standard_folders.h"

namespace tallowin {

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
