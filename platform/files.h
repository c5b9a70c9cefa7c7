#pragma once

#include <cstdint>
#include <expected>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/subscription.h"

namespace tallowin {

/// Why a file operation failed: the system's own words, for the log and for messages to the user.
struct FileError {
  bool notFound = false;  ///< the file or a folder on the way to it does not exist
  std::string description;
};

/// What distinguishes one content of a file from the next without reading it. Equal stamps mean: not changed since.
struct FileStamp {
  std::int64_t modified = 0;   ///< modification time in nanoseconds since 1970
  std::uint64_t size = 0;      ///< in bytes
  std::uint64_t identity = 0;  ///< which file it is (the inode); a replaced file has another
  bool operator==(const FileStamp&) const = default;
};

/// What happened to a watched file. Several may come together.
struct FileEvents {
  bool written = false;
  bool deleted = false;
  bool renamed = false;
};

/// The mode of folders that are nobody else's business.
inline constexpr unsigned privateFolder = 0700;

/// What becomes of the mode of a file that is written anew.
enum class OldMode { kept, replaced };

/// The file system. Paths are absolute. Main thread only, except read(), exists(), rename(), createDirectory(),
/// writeAtomically() and restrictMode(), which any thread may call.
class Files {
 public:
  virtual ~Files() = default;

  /// The whole content.
  [[nodiscard]] virtual std::expected<std::string, FileError> read(const std::filesystem::path& path) = 0;

  /// Replaces the file or makes it. The bytes go to a temporary file in the same folder, which is flushed and renamed
  /// over the old one, and the folder is flushed, so that a crash at any instant leaves the old content or the new one.
  /// A new file gets `mode`, and so does an existing one unless its own is to be kept. Of a symbolic link the file that
  /// it leads to is replaced. The folder must exist. On failure the old content is whole and no temporary file is left;
  /// only when it is the folder that cannot be flushed the new content has taken its place.
  [[nodiscard]] virtual std::expected<void, FileError> writeAtomically(const std::filesystem::path& path,
                                                                       std::string_view bytes, unsigned mode = 0644,
                                                                       OldMode old = OldMode::kept) = 0;

  /// Takes from an existing file the permissions that are not in `mode`.
  [[nodiscard]] virtual std::expected<void, FileError> restrictMode(const std::filesystem::path& path,
                                                                    unsigned mode) = 0;

  /// Makes the folder and its parents; those that this call makes get `mode`. An existing folder is success.
  [[nodiscard]] virtual std::expected<void, FileError> createDirectory(const std::filesystem::path& path,
                                                                       unsigned mode = 0755) = 0;

  /// Renames a file within one file system, replacing what has the new name.
  [[nodiscard]] virtual std::expected<void, FileError> rename(const std::filesystem::path& from,
                                                              const std::filesystem::path& to) = 0;

  /// Deletes a file. A file that does not exist is an error that says so (`notFound`).
  [[nodiscard]] virtual std::expected<void, FileError> remove(const std::filesystem::path& path) = 0;

  /// Keeps other processes that ask for the same lock waiting until the subscription is let go of, and waits for them.
  /// The lock is a file of its own, made when missing, and left. Where it cannot be had everybody goes on without it.
  [[nodiscard]] virtual Subscription lock(const std::filesystem::path& lockFile) = 0;

  [[nodiscard]] virtual bool exists(const std::filesystem::path& path) = 0;

  /// The names in a folder, sorted as text; empty when it cannot be read.
  [[nodiscard]] virtual std::vector<std::string> list(const std::filesystem::path& folder) = 0;

  /// The file's stamp; nothing when there is no such file.
  [[nodiscard]] virtual std::optional<FileStamp> stamp(const std::filesystem::path& path) = 0;

  /// Watches one file for being written, deleted or renamed. `onEvent` runs on the main thread. Where a system watches
  /// opened files (open(2) with O_EVTONLY, dispatch source DISPATCH_SOURCE_TYPE_VNODE), nothing when there is no such
  /// file, and one that replaces it is not watched. Where it can watch names, the file and its folders may come and go,
  /// and whatever happens is told as `written`, as soon as the writer has closed the file. Changes that another machine
  /// makes to a shared folder need not be seen.
  [[nodiscard]] virtual std::optional<Subscription> watch(const std::filesystem::path& path,
                                                          std::function<void(FileEvents)> onEvent) = 0;
};

/// Where the user's things are. Absolute paths; the folders need not exist. On Linux they follow the XDG base directory
/// specification, in which an empty or relative variable counts as unset.
struct Folders {
  std::filesystem::path home;
  std::filesystem::path applicationSupport;  ///< $XDG_DATA_HOME, else ~/.local/share
  std::filesystem::path configuration;       ///< $XDG_CONFIG_HOME, else ~/.config
  std::filesystem::path cache;               ///< $XDG_CACHE_HOME, else ~/.cache
  std::filesystem::path documents;           ///< the user's Documents folder
  std::filesystem::path runtime;             ///< $XDG_RUNTIME_DIR; empty when there is none
  bool operator==(const Folders&) const = default;
};

}  // namespace tallowin
