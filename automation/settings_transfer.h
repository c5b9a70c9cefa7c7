#pragma once

#include <cstddef>
#include <expected>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/json_text.h"
#include "core/program_services.h"

namespace tallowin {

/// The mode of a file that nobody but the user may read or write.
inline constexpr unsigned onlyTheUser = 0600;

/// Moves everything that the user has configured to another machine as one JSON file. Main thread only.
class SettingsTransfer {
 public:
  /// Called once it is clear that the content can be taken over, before anything is.
  using WillReplace = std::function<void()>;

  explicit SettingsTransfer(const ProgramServices& services) : services_(services) {}

  /// The export file: "version" 1, "exportedAt", "spaces" (every record of the store) and "settings", by key the JSON
  /// text of a list with the value as its one element; "places" too, the managed ids of the desktops from left to
  /// right, where these are known by their places and are not 1 to N.
  [[nodiscard]] std::string exportData() const;
  /// The same in a file. The sentence of success is the caller's.
  [[nodiscard]] std::expected<void, FileError> exportFile(const std::filesystem::path& path) const;
  /// The same as JSON.
  [[nodiscard]] PropertyList bundle() const;

  /// Takes an export over: settings that are not exported are passed over one by one, while a value of the wrong type
  /// is taken and reads as not set; the store's records are replaced wholesale; the desktops get the ids of "places".
  /// On failure nothing has changed. What cannot be written counts all the same, and is tried again.
  [[nodiscard]] std::expected<void, ForeignFault> importFile(
      const std::filesystem::path& path, const WillReplace& willReplace = [] {});
  /// The same with what bundle() gave.
  [[nodiscard]] std::expected<void, ForeignFault> takeOver(
      const PropertyList& bundle, const WillReplace& willReplace = [] {});

 private:
  const ProgramServices& services_;
};

/// Whether it is what SettingsTransfer::bundle() gives.
[[nodiscard]] bool isBundle(const PropertyList& json);

/// Copies of everything that was configured, made before something takes its place: the records of the Spaces, the
/// settings that an export has, the active profile, and who stands at which place. The last five are kept, each a
/// readable JSON file in the folder "Backups" of the data folder, which only the user may enter. Main thread only.
class Backups {
 public:
  static constexpr std::size_t most = 5;

  /// One of them.
  struct Copy {
    Date keptAt;
    std::string reason;  ///< such as "before profile Work"
    bool operator==(const Copy&) const = default;
  };

  enum class Restored {
    all,
    withoutDesktops,  ///< but a desktop that was removed was not seen to be added again
  };

  Backups(const ProgramServices& services, SettingsTransfer& transfer) : services_(services), transfer_(transfer) {}

  /// Makes a copy, in place of the oldest one. That it could not be written is logged, and stops nobody.
  void keep(const std::string& reason);

  /// The latest first. Files that are no copies are passed over.
  [[nodiscard]] std::vector<Copy> list() const;
  /// The same for reading, one line each: number, local time, reason.
  [[nodiscard]] std::string listText() const;

  /// Puts one of the list back, counted from 1, after making a copy of what is there now. Desktops that were removed
  /// since are added again where that is possible. Nothing when there is no such copy.
  std::optional<Restored> restore(std::size_t number);

 private:
  struct Found {
    Copy copy;
    PropertyList content;
  };

  [[nodiscard]] std::filesystem::path folder() const;
  [[nodiscard]] std::vector<std::pair<int, std::filesystem::path>> files() const;
  [[nodiscard]] std::vector<Found> read() const;

  const ProgramServices& services_;
  SettingsTransfer& transfer_;
};

/// The list for programs: a list of {"number", "keptAt", "reason"}.
[[nodiscard]] PropertyList backupRecords(const std::vector<Backups::Copy>& copies);

}  // namespace tallowin
