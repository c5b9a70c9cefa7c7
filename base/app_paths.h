#pragma once

#include <filesystem>

#include "platform/files.h"
#include "platform/folders.h"

namespace tallowin {

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

}  // namespace tallowin
