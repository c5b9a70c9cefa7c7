#pragma once

#include "base/app_paths.h"
#include "base/record_file.h"
#include "base/subscriptions.h"
#include "core/space_changes.h"
#include "core/space_state.h"
#include "windows/space_contents.h"

namespace tallowin {

/// Keeps "state.json" in the support folder up to date, for other programs on the machine: the state record as it is
/// 0.4 seconds after the last change of the Spaces, of what is said of them and of what is on them. Main thread only.
class StateExporter {
 public:
  static constexpr Duration delay = std::chrono::milliseconds(400);

  struct Services {
    SpaceWatcher& watcher;
    SpaceStore& store;
    SpaceChanges& changes;
    SpaceContents& contents;
    Storage& storage;
    const AppPaths& paths;
    const Clock& clock;
  };

  /// Watches from now on.
  explicit StateExporter(Services services);
  StateExporter(const StateExporter&) = delete;
  StateExporter& operator=(const StateExporter&) = delete;

  /// Writes the file 0.4 seconds after the last call of a run of them; not before the first snapshot, as until then
  /// nothing is known.
  void schedule();

 private:
  const Services services_;
  RecordFile file_;
  Subscriptions observers_;
};

/// The names of the applications on a Space, as the contents have them last. They must outlive the answer.
[[nodiscard]] AppNames appNames(const SpaceContents& contents);

}  // namespace tallowin
