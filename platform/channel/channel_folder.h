#pragma once

#include <string>

namespace tallowin {

/// Where the socket of the user's running instance and its lock are: "tallowin" in $XDG_RUNTIME_DIR; without that
/// variable "tallowin-" and the user's number in the temporary folder; with a folder `home` of its own, "run" there.
[[nodiscard]] std::string channelFolder(const char* home);

/// An open folder that belongs to the user and to nobody else.
class PrivateFolder {
 public:
  /// Opens it; with `create` also makes it, with its parents.
  PrivateFolder(const std::string& path, bool create);
  ~PrivateFolder();
  PrivateFolder(const PrivateFolder&) = delete;
  PrivateFolder& operator=(const PrivateFolder&) = delete;

  /// Negative when there is none: error() says why.
  [[nodiscard]] int descriptor() const { return descriptor_; }
  [[nodiscard]] bool isMissing() const { return missing_; }
  [[nodiscard]] const std::string& error() const { return error_; }

  /// The name of something in the folder that is short enough for a socket address, however long the folder's is.
  [[nodiscard]] std::string shortPath(const char* name) const;

 private:
  void check(const std::string& path, bool mend);

  int descriptor_ = -1;
  bool missing_ = false;
  std::string error_;
};

/// The names of what is in the folder.
inline constexpr auto channelSocketName = "socket";
inline constexpr auto instanceLockName = "lock";
inline constexpr auto startLockName = "start-lock";  ///< held by whoever starts the instance for its caller

}  // namespace tallowin
