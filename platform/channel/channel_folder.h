#pragma once

#include <cstring>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>

#include "platform/descriptors.h"

namespace tallowin {

/// Where the socket of the user's running instance and its lock are: "tallowin" in $XDG_RUNTIME_DIR; without that
/// variable "tallowin-" and the user's number in the temporary folder; with a folder `home` of its own, "run" there.
[[nodiscard]] std::string channelFolder(const char* home);

/// An open folder that belongs to the user and to nobody else.
class PrivateFolder {
 public:
  /// Opens it; with `create` also makes it, with its parents.
  PrivateFolder(const std::string& path, bool create);

  /// Negative when there is none: error() says why.
  [[nodiscard]] int descriptor() const { return descriptor_.get(); }
  [[nodiscard]] bool isMissing() const { return missing_; }
  [[nodiscard]] const std::string& error() const { return error_; }

  /// The name of something in the folder that is short enough for a socket address, however long the folder's is.
  [[nodiscard]] std::string shortPath(const char* name) const;

 private:
  void check(const std::string& path, bool mend);

  OwnedDescriptor descriptor_;
  bool missing_ = false;
  std::string error_;
};

/// The names of what is in the folder.
inline constexpr auto channelSocketName = "socket";
inline constexpr auto instanceLockName = "lock";
inline constexpr auto startLockName = "start-lock";  ///< held by whoever starts the instance for its caller

/// The address of a socket in the file system. Paths that are too long are cut off, which no file answers to.
inline sockaddr_un unixAddress(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::memcpy(address.sun_path, path.data(), path.size() < sizeof address.sun_path ? path.size() : 0);
  return address;
}

/// Makes sure that one instance at most is resident in a folder. The lock ends with the process, however it ends.
class InstanceLock {
 public:
  /// Tries once to become the instance of `folder`, which is made where it is missing. With another `name` the lock is
  /// for something else that only one process may do at a time.
  explicit InstanceLock(const std::string& folder, const char* name = instanceLockName);

  enum class State {
    held,
    taken,   ///< another process is the instance
    failed,  ///< there is no such folder to be had; error() says why
  };
  [[nodiscard]] State state() const { return state_; }
  [[nodiscard]] const std::string& error() const { return error_; }
  [[nodiscard]] const PrivateFolder& folder() const { return folder_; }

  /// Lets another process become the instance.
  void release();

 private:
  const PrivateFolder folder_;
  std::string error_;
  OwnedDescriptor descriptor_;
  State state_ = State::failed;
};

}  // namespace tallowin
