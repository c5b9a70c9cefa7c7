#include "platform/channel/instance_lock.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace tallowin {

InstanceLock::InstanceLock(const std::string& folder, const char* name)
    : folder_(folder, true), error_(folder_.error()) {
  if (folder_.descriptor() < 0) {
    return;
  }
  constexpr mode_t privateFile = 0600;
  descriptor_ = ::openat(folder_.descriptor(), name, O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, privateFile);
  if (descriptor_ >= 0 && ::flock(descriptor_, LOCK_EX | LOCK_NB) == 0) {
    state_ = State::held;
  } else if (descriptor_ >= 0 && errno == EWOULDBLOCK) {
    state_ = State::taken;
  } else {
    error_ = "cannot lock " + folder + "/" + name + ": " + std::strerror(errno);
  }
}

InstanceLock::~InstanceLock() {
  release();
}

void InstanceLock::release() {
  if (descriptor_ >= 0) {
    ::close(descriptor_);
    descriptor_ = -1;
    state_ = State::failed;
  }
}

}  // namespace tallowin
