#pragma once

#include <expected>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
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
  /// The same as JSON.
  [[nodiscard]] PropertyList bundle() const;

  /// Takes an export over: settings that are not exported are passed over one by one, while a value of the wrong type
  /// is taken and reads as not set; the store's records are replaced wholesale; the desktops get the ids of "places".
  /// On failure nothing has changed. What cannot be written counts all the same, and is tried again.
  [[nodiscard]] std::expected<void, ForeignFault> importData(std::string_view bytes);

  /// The same with files. The sentences of success are the caller's.
  [[nodiscard]] std::expected<void, FileError> exportFile(const std::filesystem::path& path) const;
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

}  // namespace tallowin
