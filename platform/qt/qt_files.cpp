#include "platform/qt/qt_files.h"

#include <QSaveFile>
#include <algorithm>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "platform/qt/file_watch.h"
#include "platform/qt/owned_descriptor.h"

namespace tallowin {

namespace {

FileError fileError(const std::error_code& error) {
  const bool notFound = error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory;
  return {notFound, error.message()};
}

FileError lastError() {
  return fileError(std::error_code(errno, std::generic_category()));
}

QFileDevice::Permissions permissions(unsigned mode) {
  // Qt's bits are the mode's, one hexadecimal digit for each octal one (QFileDevice::Permission).
  const unsigned owner = mode >> 6 & 7;
  const unsigned group = mode >> 3 & 7;
  const unsigned other = mode & 7;
  return QFileDevice::Permissions(QFlag(static_cast<int>(owner << 12 | owner << 8 | group << 4 | other)));
}

/// Makes a rename in the folder last through a power failure.
void flushFolder(const std::filesystem::path& folder) {
  const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor >= 0) {
    ::fsync(descriptor);
    ::close(descriptor);
  }
}

}  // namespace

std::expected<std::string, FileError> QtFiles::read(const std::filesystem::path& path) {
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

std::expected<void, FileError> QtFiles::writeAtomically(const std::filesystem::path& path, std::string_view bytes,
                                                        unsigned mode) {
  QSaveFile file(QString::fromStdString(path.string()));
  const bool isNew = !exists(path);
  if (!file.open(QIODevice::WriteOnly) || (isNew && !file.setPermissions(permissions(mode)))) {
    return std::unexpected(FileError{false, file.errorString().toStdString()});
  }
  const auto size = static_cast<qint64>(bytes.size());
  // commit() flushes the file to the disk before it renames it.
  const auto data = QByteArray::fromRawData(bytes.data(), size);
  if (file.write(data) != size || !file.commit()) {
    return std::unexpected(FileError{false, file.errorString().toStdString()});
  }
  flushFolder(path.parent_path());
  return {};
}

std::expected<void, FileError> QtFiles::createDirectory(const std::filesystem::path& path, unsigned mode) {
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
    return std::unexpected(FileError{false, "a file is in the way"});
  }
  return {};
}

std::expected<void, FileError> QtFiles::rename(const std::filesystem::path& from, const std::filesystem::path& to) {
  std::error_code error;
  std::filesystem::rename(from, to, error);
  if (error) {
    return std::unexpected(fileError(error));
  }
  flushFolder(to.parent_path());
  return {};
}

std::expected<void, FileError> QtFiles::remove(const std::filesystem::path& path) {
  std::error_code error;
  if (!std::filesystem::remove(path, error)) {
    return std::unexpected(fileError(error ? error : std::make_error_code(std::errc::no_such_file_or_directory)));
  }
  return {};
}

Subscription QtFiles::lock(const std::filesystem::path& lockFile) {
  constexpr mode_t privateFile = 0600;
  const int descriptor = ::open(lockFile.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, privateFile);
  if (descriptor < 0) {
    return {};
  }
  while (::flock(descriptor, LOCK_EX) != 0 && errno == EINTR) {
  }
  return Subscription([descriptor] { ::close(descriptor); });
}

bool QtFiles::exists(const std::filesystem::path& path) {
  std::error_code error;
  return std::filesystem::exists(path, error);
}

std::vector<std::string> QtFiles::list(const std::filesystem::path& folder) {
  std::vector<std::string> names;
  std::error_code error;
  for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    names.push_back(entry->path().filename().string());
  }
  std::ranges::sort(names);
  return names;
}

std::optional<FileStamp> QtFiles::stamp(const std::filesystem::path& path) {
  struct stat status{};
  if (::stat(path.c_str(), &status) != 0) {
    return std::nullopt;
  }
  constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;
  return FileStamp{status.st_mtim.tv_sec * nanosecondsPerSecond + status.st_mtim.tv_nsec,
                   static_cast<std::uint64_t>(status.st_size), status.st_ino};
}

std::optional<Subscription> QtFiles::watch(const std::filesystem::path& path, std::function<void(FileEvents)> onEvent) {
  return watchFile(descriptors_, path, std::move(onEvent));
}

}  // namespace tallowin
