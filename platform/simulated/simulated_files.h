#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/clock.h"
#include "platform/files.h"
#include "platform/main_queue.h"
#include "platform/property_list.h"
#include "platform/simulated/journal.h"

namespace tallowin {

/// The simulated user's folders, all below "/home/user".
[[nodiscard]] const Folders& simulatedFolders();

/// An absolute path of the simulated machine: "~" at the beginning stands for the home folder. Empty when the text is
/// no such path.
[[nodiscard]] std::string simulatedPath(std::string_view text);

/// The bytes as Base64 with padding (RFC 4648, section 4).
[[nodiscard]] std::string base64(std::string_view bytes);

/// The bytes that such a text stands for; nothing when it is none.
[[nodiscard]] std::optional<std::string> bytesOfBase64(std::string_view text);

/// Where a disk may fail while a file is written anew.
enum class WriteStage { open, write, flush, rename, folder };

/// A file system in memory, with faults. What the program changes becomes a line of the journal, failures with their
/// "error"; the operations with a name of their own are the hand of the user or of another program. Main thread only.
class SimulatedFiles : public Files {
 public:
  SimulatedFiles(MainQueue& queue, const Clock& clock, Journal& journal);

  std::expected<std::string, FileError> read(const std::filesystem::path& path) override;
  std::expected<void, FileError> writeAtomically(const std::filesystem::path& path, std::string_view bytes,
                                                 unsigned mode, OldMode old) override;
  std::expected<void, FileError> restrictMode(const std::filesystem::path& path, unsigned mode) override;
  std::expected<void, FileError> createDirectory(const std::filesystem::path& path, unsigned mode) override;
  std::expected<void, FileError> rename(const std::filesystem::path& from, const std::filesystem::path& to) override;
  std::expected<void, FileError> remove(const std::filesystem::path& path) override;
  /// Nobody else writes while the program does.
  Subscription lock(const std::filesystem::path& /*lockFile*/) override { return {}; }
  bool exists(const std::filesystem::path& path) override;
  std::vector<std::string> list(const std::filesystem::path& folder) override;
  std::optional<FileStamp> stamp(const std::filesystem::path& path) override;
  std::optional<Subscription> watch(const std::filesystem::path& path,
                                    std::function<void(FileEvents)> onEvent) override;

  /// Makes a folder and those on the way to it. A file on the way gives way.
  void placeFolder(const std::filesystem::path& path);
  /// Writes over the file itself, or makes it and the folders on the way to it. A folder stays as it is.
  void overwrite(const std::filesystem::path& path, std::string_view bytes);
  /// Puts another file in its place, or makes it and the folders on the way to it. A folder stays as it is.
  void replace(const std::filesystem::path& path, std::string_view bytes);
  /// Deletes the file; without one, nothing happens.
  void take(const std::filesystem::path& path);
  /// Cuts the file in half and puts bytes behind it that are no text in any encoding of Unicode.
  void corrupt(const std::filesystem::path& path);
  /// Whether the program's writes at this path, or in this folder, are refused.
  void setUnwritable(const std::filesystem::path& path, bool unwritable);
  /// From now on the disk has room for files of so many bytes at most; nothing for no limit.
  void setRoom(std::optional<std::size_t> bytes) { room_ = bytes; }
  /// From now on every write fails at this stage; nothing for none.
  void failAt(std::optional<WriteStage> stage) { failing_ = stage; }

  /// Every file with its content, in the order of the paths: text as text, other bytes as {"base64": …}.
  [[nodiscard]] nlohmann::ordered_json contents() const;

 private:
  struct Watch {
    std::function<void(FileEvents)> onEvent;
  };
  struct File {
    std::string bytes;
    unsigned mode = 0644;
    std::int64_t modified = 0;
    std::uint64_t identity = 0;
    std::vector<std::weak_ptr<Watch>> watches;
  };

  std::optional<FileError> refusal(const std::filesystem::path& path) const;
  std::optional<FileError> failure(std::size_t size) const;
  void put(const std::string& path, std::string_view bytes, unsigned mode, OldMode oldMode);
  void tell(const File& file, FileEvents events);
  std::expected<void, FileError> journalled(std::string_view op, nlohmann::ordered_json arguments,
                                            std::optional<FileError> error);

  MainQueue& queue_;
  const Clock& clock_;
  Journal& journal_;
  std::optional<std::size_t> room_;
  std::optional<WriteStage> failing_;
  std::int64_t lastModified_ = 0;
  std::uint64_t lastIdentity_ = 0;
  std::set<std::string> unwritable_;
  std::set<std::string> folders_;
  std::map<std::string, File> files_;  // by path
};

/// The program's preferences file, a JSON object, as a user edits it by hand. Main thread only.
class PreferencesFile {
 public:
  /// `initial` is what the file starts with; without any there is no file.
  PreferencesFile(SimulatedFiles& files, std::map<std::string, PropertyList> initial)
      : files_(files), initial_(std::move(initial)) {}

  /// Where the file is. Until this is told, edits do nothing.
  void use(const std::filesystem::path& path);

  /// Each rewrites the file in place. A file that is no JSON object counts as an empty one.
  void set(const std::string& key, const PropertyList& value);
  void remove(const std::string& key);

 private:
  [[nodiscard]] PropertyList read();
  void write(const PropertyList& preferences);

  SimulatedFiles& files_;
  const std::map<std::string, PropertyList> initial_;
  std::filesystem::path path_;
};

}  // namespace tallowin
