#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <string>

#include "platform/clock.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/pinned.h"
#include "platform/processes.h"

namespace tallowin {

/// Keeps one ui process running, as long as this lives. One that ends is started again: soon, and when that has been
/// done three times in a minute, when a window is wanted. Main thread only.
class UiProcess : Pinned {
 public:
  static constexpr Duration restartDelay = std::chrono::milliseconds(200);
  static constexpr std::size_t mostStarts = 3;
  static constexpr Duration startsCountFor = std::chrono::minutes(1);

  struct Services {
    WatchedProcesses& processes;
    MainQueue& mainQueue;
    const Clock& clock;
    Log& log;
    ProcessRequest program;
    std::function<bool()> isAttached;  ///< whether a ui process is there, whoever has started it
    std::function<void()> onFailed;    ///< there is no ui process, and none will be started soon
  };

  explicit UiProcess(Services services) : services_(std::move(services)) {}

  /// Starts it, unless it runs; however often it has been started before.
  void start();
  /// Starts it when another one, which this has not started, has gone.
  void startSoon();
  [[nodiscard]] bool isRunning() const { return process_ != nullptr; }

  /// Ends it, as it hangs; it is started again.
  void kill();

 private:
  void ended(const std::string& how);

  const Services services_;
  std::unique_ptr<WatchedProcess> process_;
  std::deque<std::uint64_t> starts_;  ///< the latest, as Clock::machAbsoluteTime()
  WorkItem restart_;
};

}  // namespace tallowin
