#include "platform/xdg/icon_lookup.h"

#include <string>

namespace tallowin {

namespace {

constexpr int sizes[] = {256, 192, 128, 96, 72, 64, 48, 512, 36, 32, 24, 22, 16};

bool isPicture(const std::filesystem::path& path) {
  std::error_code error;
  return path.extension() == ".png" && std::filesystem::is_regular_file(path, error);
}

}  // namespace

std::optional<std::filesystem::path> findIcon(std::string_view icon, const XdgEnvironment& environment) {
  if (icon.empty() || icon.starts_with('/')) {
    return isPicture(icon) ? std::optional<std::filesystem::path>(icon) : std::nullopt;
  }
  const std::string name = std::string(icon) + (icon.ends_with(".png") ? "" : ".png");
  std::vector<std::filesystem::path> themes = {environment.home / ".icons"};
  for (const auto& folder : environment.dataFolders) {
    themes.push_back(folder / "icons");
  }
  for (const int size : sizes) {
    const auto folder = std::to_string(size) + "x" + std::to_string(size);
    for (const auto& theme : themes) {
      if (auto path = theme / "hicolor" / folder / "apps" / name; isPicture(path)) {
        return path;
      }
    }
  }
  for (const auto& folder : environment.dataFolders) {
    if (auto path = folder / "pixmaps" / name; isPicture(path)) {
      return path;
    }
  }
  return std::nullopt;
}

}  // namespace tallowin
