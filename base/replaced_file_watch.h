#pragma once

#include <filesystem>
#include <functional>

#include "platform/files.h"
#include "platform/main_queue.h"

namespace tallowin {

/// Watches one file that may be replaced whenever it is saved, and that need not exist yet. Where the system watches
/// opened files only, it looks again every 2 seconds while there is none. Main thread only.
class ReplacedFileWatch {
 public:
  /// `onChange` runs on the main thread after every write, deletion or replacement.
  ReplacedFileWatch(Files& files, MainQueue& mainQueue, std::filesystem::path file, std::function<void()> onChange);

  /// Told whenever a file begins to be watched: what happened to it before has not been seen. Set before start().
  std::function<void()> onWatched;

  void start() { watch(); }

 private:
  void watch();
  void changed(const FileEvents& events);

  Files& files_;
  MainQueue& mainQueue_;
  const std::filesystem::path file_;
  const std::function<void()> onChange_;

  Subscription source_;
  WorkItem again_;
};

}  // namespace tallowin
