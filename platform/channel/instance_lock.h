#pragma once

#include <string>

#include "platform/channel/channel_folder.h"

namespace tallowin {

/// Makes sure that one instance at most is resident in a folder. The lock ends with the process, however it ends.
class InstanceLock {
 public:
  /// Tries once to become the instance of `folder`, which is made where it is missing. With another `name` the lock is
  /// for something else that only one process may do at a time.
  explicit InstanceLock(const std::string& folder, const char* name = instanceLockName);
  ~InstanceLock();
  InstanceLock(const InstanceLock&) = delete;
  InstanceLock& operator=(const InstanceLock&) = delete;

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
  int descriptor_ = -1;
  State state_ = State::failed;
};

}  // namespace tallowin
