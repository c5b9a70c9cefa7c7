#pragma once

#include <filesystem>
#include <functional>
#include <optional>

#include "platform/descriptors.h"
#include "platform/files.h"

namespace tallowin {

/// The real file system.
class UnixFiles : public Files {
 public:
  explicit UnixFiles(Descriptors& descriptors) : descriptors_(descriptors) {}

  std::expected<std::string, FileError> read(const std::filesystem::path& path) override;
  std::expected<void, FileError> writeAtomically(const std::filesystem::path& path, std::string_view bytes,
                                                 unsigned mode, OldMode old) override;
  std::expected<void, FileError> restrictMode(const std::filesystem::path& path, unsigned mode) override;
  std::expected<void, FileError> createDirectory(const std::filesystem::path& path, unsigned mode) override;
  std::expected<void, FileError> rename(const std::filesystem::path& from, const std::filesystem::path& to) override;
  std::expected<void, FileError> remove(const std::filesystem::path& path) override;
  Subscription lock(const std::filesystem::path& lockFile) override;
  bool exists(const std::filesystem::path& path) override;
  std::vector<std::string> list(const std::filesystem::path& folder) override;
  std::optional<FileStamp> stamp(const std::filesystem::path& path) override;
  std::optional<Subscription> watch(const std::filesystem::path& path,
                                    std::function<void(FileEvents)> onEvent) override;

 private:
  Descriptors& descriptors_;
};

/// Watches a name by inotify(7), as Files::watch says.
[[nodiscard]] std::optional<Subscription> watchFile(Descriptors& descriptors, const std::filesystem::path& path,
                                                    std::function<void(FileEvents)> onEvent);

}  // namespace tallowin
