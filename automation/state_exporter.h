#pragma once

#include <vector>

#include "automation/background_writer.h"
#include "base/app_paths.h"
#include "core/space_state.h"
#include "core/space_watcher.h"
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
    SpaceContents& contents;
    Files& files;
    const AppPaths& paths;
    MainQueue& mainQueue;
    WorkQueues& workQueues;
    const Clock& clock;
    Log& log;
  };

  /// Watches from now on.
  explicit StateExporter(Services services);
  StateExporter(const StateExporter&) = delete;
  StateExporter& operator=(const StateExporter&) = delete;

  /// Writes the file 0.4 seconds from now, in place of a write that is pending.
  void schedule();

  /// Writes the file now; not before the first snapshot, as until then nothing is known.
  void write();

 private:
  const Services services_;
  BackgroundWriter writer_;
  std::vector<Subscription> observers_;
  WorkItem pending_;
};

/// The names of the applications on a Space, as the contents have them last. They must outlive the answer.
[[nodiscard]] AppNames appNames(const SpaceContents& contents);

}  // namespace tallowin
