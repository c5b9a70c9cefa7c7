#pragma once

#include <cstddef>
#include <expected>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "automation/settings_transfer.h"
#include "core/program_services.h"

namespace tallowin {

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
