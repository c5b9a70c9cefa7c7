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

}  // namespace tallowin
