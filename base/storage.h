#pragma once

#include <expected>
#include <vector>

#include "platform/clock.h"
#include "platform/files.h"
#include "platform/log.h"
#include "platform/main_queue.h"

namespace tallowin {

class RecordFile;

/// What the program's own files are written with, and which of them hold less than what was accepted. It must outlive
/// every RecordFile made with it. Main thread only.
class Storage {
 public:
  struct Services {
    Files& files;
    MainQueue& mainQueue;
    WorkQueues& workQueues;
    const Clock& clock;
    Log& log;
  };

  explicit Storage(Services services) : services_(services) {}
  Storage(const Storage&) = delete;
  Storage& operator=(const Storage&) = delete;

  /// Writes everything that was accepted and is not in its file yet before it returns. Every file gets one attempt; the
  /// error is that of the first that could not be written, which stays unsaved and is tried again later. Files whose
  /// content is not owed to anybody (SaveRule::isOwed) are left to their own time.
  [[nodiscard]] std::expected<void, FileError> saveNow();

  /// Whether the last attempt to write succeeded for every file. A change that waits for its first attempt counts as no
  /// failure.
  [[nodiscard]] bool isSound() const;

 private:
  friend class RecordFile;

  /// The one queue that changes of all files are written on, made for the first.
  [[nodiscard]] WorkQueue& queue();

  const Services services_;
  std::vector<RecordFile*> files_;  ///< in the order in which they were made
  std::unique_ptr<WorkQueue> queue_;
};

}  // namespace tallowin
