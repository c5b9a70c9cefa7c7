#include "platform/channel/channel_folder.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tallowin {

namespace {

constexpr mode_t privateMode = 0700;
constexpr mode_t othersMode = 0077;

bool isAbsolute(const char* path) {
  return path != nullptr && *path == '/';
}

void makeWithParents(const std::string& path) {
  for (std::size_t end = 1; end != std::string::npos;) {
    end = path.find('/', end + 1);
    ::mkdir(path.substr(0, end).c_str(), privateMode);
  }
}

}  // namespace

std::string channelFolder(const char* home) {
  if (home != nullptr) {
    return std::string(home) + "/run";
  }
  // A value that is empty or relative counts as unset (XDG base directory specification).
  if (const char* runtime = std::getenv("XDG_RUNTIME_DIR"); isAbsolute(runtime)) {
    return std::string(runtime) + "/tallowin";
  }
  const char* temporary = std::getenv("TMPDIR");
  return std::string(isAbsolute(temporary) ? temporary : "/tmp") + "/tallowin-" + std::to_string(::geteuid());
}

PrivateFolder::PrivateFolder(const std::string& path, bool create) {
  if (create) {
    makeWithParents(path);
  }
  descriptor_ = OwnedDescriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!descriptor_) {
    missing_ = errno == ENOENT;
    error_ = "cannot open the folder " + path + ": " + std::strerror(errno);
    return;
  }
  check(path, create);
}

/// In a folder that somebody else could write to, anybody could listen in the user's name.
void PrivateFolder::check(const std::string& path, bool mend) {
  struct stat status{};
  const bool isOurs = ::fstat(descriptor_.get(), &status) == 0 && status.st_uid == ::geteuid();
  const bool isPrivate = (status.st_mode & othersMode) == 0;
  if (isOurs && (isPrivate || (mend && ::fchmod(descriptor_.get(), privateMode) == 0))) {
    return;
  }
  error_ = "the folder " + path + " is open to others";
  descriptor_ = OwnedDescriptor();
}

std::string PrivateFolder::shortPath(const char* name) const {
  return "/proc/self/fd/" + std::to_string(descriptor()) + "/" + name;
}

InstanceLock::InstanceLock(const std::string& folder, const char* name)
    : folder_(folder, true), error_(folder_.error()) {
  if (folder_.descriptor() < 0) {
    return;
  }
  constexpr mode_t privateFile = 0600;
  descriptor_ =
      OwnedDescriptor(::openat(folder_.descriptor(), name, O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, privateFile));
  if (descriptor_ && ::flock(descriptor_.get(), LOCK_EX | LOCK_NB) == 0) {
    state_ = State::held;
  } else if (descriptor_ && errno == EWOULDBLOCK) {
    state_ = State::taken;
  } else {
    error_ = "cannot lock " + folder + "/" + name + ": " + std::strerror(errno);
  }
}

void InstanceLock::release() {
  descriptor_ = OwnedDescriptor();
  state_ = State::failed;
}

}  // namespace tallowin
