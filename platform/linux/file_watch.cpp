#include <array>
#include <cstring>
#include <memory>
#include <string_view>
#include <sys/inotify.h>

#include "platform/descriptors.h"
#include "platform/linux/unix_files.h"

namespace tallowin {

namespace {

bool isSymbolicLink(const std::filesystem::path& path) {
  std::error_code error;
  return std::filesystem::is_symlink(path, error);
}

bool isFolder(const std::filesystem::path& path) {
  std::error_code error;
  return std::filesystem::is_directory(path, error);
}

/// A name, watched by way of the folders that lead to it. Those that exist tell when they go; the last one tells what
/// comes, until the file's own folder is there.
class NameWatch {
 public:
  explicit NameWatch(std::filesystem::path path)
      : path_(std::move(path)), inotify_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {}

  [[nodiscard]] int descriptor() const { return inotify_.get(); }

  /// Watches the folders that there are now. False when the system refuses.
  bool arm() {
    std::filesystem::path deepest;
    do {
      deepest = deepestFolder();
      if (!watchFolders(deepest)) {
        return false;
      }
    } while (deepest != deepestFolder());  // one that came meanwhile was not watched
    return true;
  }

  /// Whether one of the events that have arrived says that the file, or the way to it, may be another one.
  bool readEvents() {
    bool concerned = false;
    alignas(inotify_event) std::array<char, 4096> buffer{};
    for (ssize_t size = 0; (size = ::read(inotify_.get(), buffer.data(), buffer.size())) > 0;) {
      for (std::size_t at = 0; at + sizeof(inotify_event) <= static_cast<std::size_t>(size);) {
        inotify_event event{};
        std::memcpy(&event, buffer.data() + at, sizeof event);
        const char* name = buffer.data() + at + sizeof event;
        concerned |= concerns(event, event.len > 0 ? name : "");
        at += sizeof event + event.len;
      }
    }
    return concerned;
  }

 private:
  [[nodiscard]] std::filesystem::path deepestFolder() const {
    auto folder = path_.parent_path();
    while (!isFolder(folder) && folder.has_relative_path()) {
      folder = folder.parent_path();
    }
    return folder;
  }

  bool watchFolders(const std::filesystem::path& deepest) {
    for (const int watch : watches_) {
      inotify_rm_watch(inotify_.get(), watch);
    }
    watches_.clear();
    const auto rest = path_.lexically_relative(deepest);
    awaited_ = rest.begin()->string();
    isComplete_ = rest == path_.filename();
    const std::uint32_t contents = isComplete_ ? coming | IN_CLOSE_WRITE | IN_DELETE | IN_MOVED_FROM : coming;
    for (auto folder = deepest; folder.has_relative_path(); folder = folder.parent_path()) {
      add(folder, IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR | (folder == deepest ? contents : 0));
    }
    const bool isWatched = !watches_.empty() || add(deepest, contents);
    if (isComplete_ && isSymbolicLink(path_)) {  // others write to where it leads
      add(path_, IN_CLOSE_WRITE | IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF);
    }
    return isWatched;
  }

  bool add(const std::filesystem::path& path, std::uint32_t events) {
    const int watch = inotify_add_watch(inotify_.get(), path.c_str(), events);
    if (watch >= 0) {
      watches_.push_back(watch);
    }
    return watch >= 0;
  }

  [[nodiscard]] bool concerns(const inotify_event& event, std::string_view name) const {
    if (name.empty()) {
      return (event.mask & IN_IGNORED) == 0;
    }
    // A file that is just begun has nothing in it yet; that it is closed is told as well.
    const bool isBegun = isComplete_ && event.mask == IN_CREATE && !isSymbolicLink(path_);
    return name == awaited_ && !isBegun;
  }

  static constexpr std::uint32_t coming = IN_CREATE | IN_MOVED_TO;

  const std::filesystem::path path_;
  const OwnedDescriptor inotify_;
  std::vector<int> watches_;
  std::string awaited_;      ///< what would come next in the deepest folder
  bool isComplete_ = false;  ///< whether that is the file
};

}  // namespace

std::optional<Subscription> watchFile(Descriptors& descriptors, const std::filesystem::path& path,
                                      std::function<void(FileEvents)> onEvent) {
  // Owned by the subscription alone; a function object has to be copyable.
  struct Watched {
    explicit Watched(const std::filesystem::path& name) : names(name) {}
    NameWatch names;
    Subscription readable;
  };
  auto watched = std::make_shared<Watched>(path);
  if (watched->names.descriptor() < 0 || !watched->names.arm()) {
    return std::nullopt;
  }
  watched->readable =
      descriptors.watchReadable(watched->names.descriptor(), [names = &watched->names, onEvent = std::move(onEvent)] {
        if (names->readEvents()) {
          names->arm();
          onEvent({.written = true});
        }
      });
  return Subscription([watched] { watched->readable.cancel(); });
}

}  // namespace tallowin
