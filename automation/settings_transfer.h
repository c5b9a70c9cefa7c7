#pragma once

#include <expected>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "automation/diagnostics_text.h"
#include "base/foreign_json.h"
#include "base/settings.h"
#include "core/space_store.h"
#include "platform/desktop.h"
#include "platform/displays.h"
#include "platform/files.h"
#include "platform/screen_capture.h"
#include "platform/space_places.h"
#include "platform/system.h"
#include "platform/windows.h"

namespace tallowin {

/// Moves everything that the user has configured to another machine as one JSON file, and tells of this one for support
/// requests. Main thread only.
class SettingsTransfer {
 public:
  struct Services {
    const Settings& settings;
    SpacePlaces& places;
    Files& files;
    const Clock& clock;
    System& system;
    Desktop& desktop;
    Windows& windows;
    ScreenCapture& screenCapture;
    Displays& displays;
    DesktopFacts& desktopFacts;
    ProgramVersion program;
    std::function<std::vector<SetUpCheck>()> setUpChecks;
  };

  /// Called once it is clear that the content can be taken over, before anything is.
  using WillReplace = std::function<void()>;

  explicit SettingsTransfer(Services services) : services_(std::move(services)) {}

  /// The export file: "version" 1, "exportedAt", "spaces" (every record of the store) and "settings", by key the JSON
  /// text of a list with the value as its one element; "places" too, the managed ids of the desktops from left to
  /// right, where these are known by their places and are not 1 to N.
  [[nodiscard]] std::string exportData(const SpaceStore& store) const;
  /// The same as JSON.
  [[nodiscard]] PropertyList bundle(const SpaceStore& store) const;

  /// Takes an export over: settings that are not exported are passed over one by one, while a value of the wrong type
  /// is taken and reads as not set; the store's records are replaced wholesale; the desktops get the ids of "places".
  /// On failure nothing has changed. What cannot be written counts all the same, and is tried again.
  [[nodiscard]] std::expected<void, ForeignFault> importData(std::string_view bytes, SpaceStore& store);

  /// The same with files. The sentences of success are the caller's.
  [[nodiscard]] std::expected<void, FileError> exportFile(const SpaceStore& store,
                                                          const std::filesystem::path& path) const;
  [[nodiscard]] std::expected<void, ForeignFault> importFile(
      const std::filesystem::path& path, SpaceStore& store, const WillReplace& willReplace = [] {});
  /// The same with what bundle() gave.
  [[nodiscard]] std::expected<void, ForeignFault> takeOver(
      const PropertyList& bundle, SpaceStore& store, const WillReplace& willReplace = [] {});

  /// The report for support requests. `shortcutFailures` are the names of shortcuts that other programs have taken. May
  /// take as long as a program takes to tell its version.
  [[nodiscard]] std::string diagnostics(const SpaceSnapshot& snapshot,
                                        const std::vector<std::string>& shortcutFailures) const;

 private:
  const Services services_;
};

/// Whether it is what SettingsTransfer::bundle() gives.
[[nodiscard]] bool isBundle(const PropertyList& json);

}  // namespace tallowin
