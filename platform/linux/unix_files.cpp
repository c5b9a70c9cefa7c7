#include "platform/linux/unix_files.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "platform/pinned.h"

namespace tallowin {

namespace {

FileError fileError(const std::error_code& error) {
  const bool notFound = error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory;
  return {notFound, error.message()};
}

FileError lastError() {
  return fileError(std::error_code(errno, std::generic_category()));
}

std::expected<void, FileError> succeededIf(bool success) {
  return success ? std::expected<void, FileError>() : std::unexpected(lastError());
}

/// Makes a rename in the folder last through a power failure. Folders that may not be read, and file systems that
/// cannot flush one (EINVAL), have nothing better.
std::expected<void, FileError> flushFolder(const std::filesystem::path& folder) {
  const OwnedDescriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!descriptor) {
    return succeededIf(errno == EACCES);
  }
  return succeededIf(::fsync(descriptor.get()) == 0 || errno == EINVAL);
}

/// The file that a path leads to in the end, which need not exist. A loop of links ends somewhere in it.
std::filesystem::path withoutLinks(std::filesystem::path path) {
  constexpr int mostLinks = 40;  // as the kernel follows, path_resolution(7)
  std::error_code error;
  for (int i = 0; i < mostLinks && std::filesystem::is_symlink(path, error); ++i) {
    path = path.parent_path() / std::filesystem::read_symlink(path, error);
  }
  return path;
}

/// The mode of the file that is to be replaced, where there is one; an error when it must not be.
std::expected<std::optional<mode_t>, FileError> modeToReplace(const std::filesystem::path& path) {
  struct stat status{};
  if (::stat(path.c_str(), &status) != 0) {
    return errno == ENOENT ? std::expected<std::optional<mode_t>, FileError>(std::nullopt)
                           : std::unexpected(lastError());
  }
  if (!S_ISREG(status.st_mode)) {
    return std::unexpected(FileError{false, S_ISDIR(status.st_mode) ? "Is a directory" : "Not a regular file"});
  }
  if (::access(path.c_str(), W_OK) != 0) {
    return std::unexpected(lastError());
  }
  return status.st_mode & 07777;
}

bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto count = ::write(descriptor, bytes.data(), bytes.size());
    if (count < 0 && errno != EINTR) {
      return false;
    }
    bytes.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
  }
  return true;
}

/// Closes the descriptor. What close(2) says last may be the only word of a disk on a network.
bool closeChecked(int descriptor) {
  return ::close(descriptor) == 0 || errno == EINTR;  // on Linux it is closed then
}

/// A file of a free name that is deleted unless it is renamed.
class TemporaryFile : Pinned {
 public:
  explicit TemporaryFile(const std::filesystem::path& folder)
      : name_((folder / ".tallowin-XXXXXX").string()), descriptor_(::mkostemp(name_.data(), O_CLOEXEC)) {}
  ~TemporaryFile() {
    if (!name_.empty()) {
      ::unlink(name_.c_str());
    }
  }

  /// Each answers false with errno.
  [[nodiscard]] bool isOpen() {
    if (!descriptor_) {
      name_.clear();
    }
    return bool(descriptor_);
  }
  [[nodiscard]] bool fill(std::string_view bytes, mode_t mode) {
    return ::fchmod(descriptor_.get(), mode) == 0 && writeAll(descriptor_.get(), bytes) &&
           ::fsync(descriptor_.get()) == 0 && closeChecked(descriptor_.release());
  }
  [[nodiscard]] bool rename(const std::filesystem::path& path) {
    const bool renamed = ::rename(name_.c_str(), path.c_str()) == 0;
    if (renamed) {
      name_.clear();
    }
    return renamed;
  }

 private:
  std::string name_;
  OwnedDescriptor descriptor_;
};

}  // namespace

std::expected<std::string, FileError> UnixFiles::read(const std::filesystem::path& path) {
  // Opening a pipe that nobody writes to would wait, but for this flag.
  const OwnedDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat status{};
  if (!file || ::fstat(file.get(), &status) != 0) {
    return std::unexpected(lastError());
  }
  if (!S_ISREG(status.st_mode)) {
    return std::unexpected(FileError{false, "Not a regular file"});  // a pipe or a device may never end
  }
  // One byte more shows in the first read that this was all; files that grow, or do not know their size, take more.
  const auto expected = static_cast<std::size_t>(status.st_size);
  std::string bytes(expected + 1, '\0');
  std::size_t size = 0;
  for (ssize_t count = 1; count > 0 && (size == 0 || size != expected);) {
    bytes.resize(size < bytes.size() ? bytes.size() : 2 * size);
    do {
      count = ::read(file.get(), bytes.data() + size, bytes.size() - size);
    } while (count < 0 && errno == EINTR);
    if (count < 0) {
      return std::unexpected(lastError());
    }
    size += static_cast<std::size_t>(count);
  }
  bytes.resize(size);
  return bytes;
}

std::expected<void, FileError> UnixFiles::writeAtomically(const std::filesystem::path& path, std::string_view bytes,
                                                          unsigned mode, OldMode old) {
  const auto target = withoutLinks(path);
  const auto oldMode = modeToReplace(target);
  if (!oldMode) {
    return std::unexpected(oldMode.error());
  }
  const auto newMode = old == OldMode::kept ? oldMode->value_or(mode) : mode;
  TemporaryFile file(target.parent_path());
  if (!file.isOpen() || !file.fill(bytes, newMode) || !file.rename(target)) {
    return std::unexpected(lastError());
  }
  return flushFolder(target.parent_path());
}

std::expected<void, FileError> UnixFiles::restrictMode(const std::filesystem::path& path, unsigned mode) {
  struct stat status{};
  if (::stat(path.c_str(), &status) != 0) {
    return std::unexpected(lastError());
  }
  const bool isWider = (status.st_mode & 07777 & ~mode) != 0;
  return succeededIf(!isWider || ::chmod(path.c_str(), status.st_mode & mode) == 0);
}

std::expected<void, FileError> UnixFiles::createDirectory(const std::filesystem::path& path, unsigned mode) {
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) {
    return {};
  }
  if (path.has_parent_path() && path.parent_path() != path) {
    if (auto parents = createDirectory(path.parent_path(), mode); !parents) {
      return parents;
    }
  }
  if (::mkdir(path.c_str(), static_cast<mode_t>(mode)) != 0 && errno != EEXIST) {
    return std::unexpected(lastError());
  }
  if (!std::filesystem::is_directory(path, error)) {
    return std::unexpected(FileError{false, "A file is in the way"});
  }
  return {};
}

std::expected<void, FileError> UnixFiles::rename(const std::filesystem::path& from, const std::filesystem::path& to) {
  std::error_code error;
  std::filesystem::rename(from, to, error);
  if (error) {
    return std::unexpected(fileError(error));
  }
  static_cast<void>(flushFolder(to.parent_path()));  // it has happened; the next write there tells of the folder
  return {};
}

std::expected<void, FileError> UnixFiles::remove(const std::filesystem::path& path) {
  std::error_code error;
  if (!std::filesystem::remove(path, error)) {
    return std::unexpected(fileError(error ? error : std::make_error_code(std::errc::no_such_file_or_directory)));
  }
  return {};
}

Subscription UnixFiles::lock(const std::filesystem::path& lockFile) {
  constexpr mode_t privateFile = 0600;
  const auto descriptor =
      std::make_shared<const OwnedDescriptor>(::open(lockFile.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, privateFile));
  while (*descriptor && ::flock(descriptor->get(), LOCK_EX) != 0 && errno == EINTR) {
  }
  return *descriptor ? Subscription([descriptor] {}) : Subscription();
}

bool UnixFiles::exists(const std::filesystem::path& path) {
  std::error_code error;
  return std::filesystem::exists(path, error);
}

std::vector<std::string> UnixFiles::list(const std::filesystem::path& folder) {
  std::vector<std::string> names;
  std::error_code error;
  for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    names.push_back(entry->path().filename().string());
  }
  std::ranges::sort(names);
  return names;
}

std::optional<FileStamp> UnixFiles::stamp(const std::filesystem::path& path) {
  struct stat status{};
  if (::stat(path.c_str(), &status) != 0) {
    return std::nullopt;
  }
  constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;
  return FileStamp{status.st_mtim.tv_sec * nanosecondsPerSecond + status.st_mtim.tv_nsec,
                   static_cast<std::uint64_t>(status.st_size), status.st_ino};
}

std::optional<Subscription> UnixFiles::watch(const std::filesystem::path& path,
                                             std::function<void(FileEvents)> onEvent) {
  return watchFile(descriptors_, path, std::move(onEvent));
}

}  // namespace tallowin
