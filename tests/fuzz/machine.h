#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <utility>

#include "automation/profile_store.h"
#include "automation/settings_transfer.h"
#include "automation/space_templates.h"
#include "automation/time_tracker.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/storing_program.h"
#include "windows/layout_files.h"
#include "windows/saved_spaces.h"

namespace tallowin {

/// A simulated desktop with a window, and the services of the program that read files, where one file has a content
/// that anybody may have written.
class Machine : public StoringProgram {
 public:
  Machine(std::filesystem::path file, std::string_view content)
      : StoringProgram(R"({"start": "2026-03-02T09:00:00Z", "windows": [{"number": 1, "pid": 11}],
                              "applications": [{"name": "Mail", "pid": 11, "bundleID": "app.mail"}]})"),
        file_(std::move(file)),
        content_(content) {
    files().replace(file_, content_);
  }

  /// Called when the file was read, and perhaps written again: what was not understood is still in its folder.
  void requireNothingLost() {
    const auto isComplaint = [](const std::string& line) {
      return line.find("cannot understand") != std::string::npos;
    };
    const auto hasContent = [this](const std::string& name) {
      return fileText(file_.parent_path() / name) == content_;
    };
    require(
        std::ranges::none_of(lines, isComplaint) || std::ranges::any_of(files().list(file_.parent_path()), hasContent),
        "what is not understood is kept");
  }

  [[nodiscard]] SpaceStore newStore() {
    return {{files(), images, desktop.workspace(), time, time, time, desktop.log(), settings, paths},
            supportFolder + "spaces.json"};
  }
  [[nodiscard]] TimeTracker newTracker() {
    return TimeTracker({files(), paths, settings, time, time, time, desktop.log()});
  }

  ProfileStore profiles{{store, settings, files(), paths, time, desktop.log()}};
  SpaceTemplates templates{{store, desktop.workspace(), files(), paths, time, desktop.log()}};
  LayoutFiles layouts{files(), time, paths, desktop.log()};
  SettingsTransfer transfer{{settings,
                             files(),
                             time,
                             desktop.system(),
                             bridge,
                             desktop.accessibility(),
                             desktop.screenCapture(),
                             desktop.desktopFacts(),
                             {"0.1.0", "1"},
                             [] { return std::vector<SetUpCheck>(); }}};
  SpaceContents contents{{desktop.windowList(), desktop.workspace(), bridge, desktop.workspaceNotifications(),
                          desktop.system(), time, time}};
  SavedSpaces savedSpaces{
      {store, contents, desktop.accessibility(), bridge, desktop.workspace(), files(), paths, time, desktop.log()},
      {[](const std::string&) { return false; }, nullptr},
      [] { return std::uint64_t{4}; }};

 private:
  const std::filesystem::path file_;
  const std::string content_;
};

}  // namespace tallowin
