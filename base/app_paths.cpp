#include "base/app_paths.h"

#include <tuple>

namespace tallowin {

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
