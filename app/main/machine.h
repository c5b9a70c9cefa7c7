#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "base/file_preferences.h"
#include "base/log_toasts.h"
#include "platform/folders.h"
#include "platform/qt/lazy_images.h"
#include "platform/qt/qt_descriptors.h"
#include "platform/qt/qt_files.h"
#include "platform/qt/qt_main_queue.h"
#include "platform/qt/qt_processes.h"
#include "platform/qt/system_clock.h"
#include "platform/qt/system_log.h"
#include "platform/qt/termination_signals.h"
#include "platform/qt/thread_work_queues.h"
#include "platform/qt/unix_system.h"

namespace tallowin {

/// The services that every real machine has, whatever its desktop.
struct Machine {
  /// `home` is where the user's things are kept, if not in the usual places.
  Machine(const std::optional<std::filesystem::path>& home, bool verbose);

  QtMainQueue mainQueue;
  ThreadWorkQueues workQueues;
  QtDescriptors descriptors;
  QtFiles files{descriptors};
  QtProcesses processes;
  SystemClock clock;
  SystemLog log;
  LazyImages images{log};
  LogToasts toasts{log};
  UnixSystem system;
  Folders folders;
  FilePreferences preferences;

  /// Makes SIGTERM, SIGINT and SIGHUP stop the run loop, the second time end the process. For modes that run it: before
  /// and without it these signals end the process at once.
  void stopOnSignals();

 private:
  Subscription signals_;
};

/// The user's folders on this machine.
[[nodiscard]] Folders machineFolders(const std::optional<std::filesystem::path>& home);

}  // namespace tallowin
