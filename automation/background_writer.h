#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "platform/files.h"
#include "platform/log.h"
#include "platform/main_queue.h"

namespace tallowin {

/// Replaces files on a queue of its own, one after the other, as waiting for the disk takes longer than a main thread
/// may. Failures are logged. Writes that have not begun when it is destroyed are dropped. Main thread only.
class BackgroundWriter {
 public:
  struct Services {
    Files& files;
    WorkQueues& workQueues;
    Log& log;
  };

  /// `label` is the queue's, `category` that of the log; both must outlive the writer.
  BackgroundWriter(Services services, std::string_view label, std::string_view category)
      : services_(services), label_(label), category_(category) {}

  void write(const std::filesystem::path& path, std::string bytes);

 private:
  const Services services_;
  const std::string_view label_;
  const std::string_view category_;
  std::unique_ptr<WorkQueue> queue_;  ///< made for the first write
};

}  // namespace tallowin
