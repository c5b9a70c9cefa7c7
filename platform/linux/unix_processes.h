#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <sys/types.h>

#include "platform/descriptors.h"
#include "platform/processes.h"

namespace tallowin {

/// Child processes, each in a session of its own, with no signal blocked or ignored and none of this process's
/// descriptors. They live on when this process ends.
class UnixProcesses : public Processes, public WatchedProcesses {
 public:
  /// Launched processes are reaped while the main loop runs, and where it does not, at the next launch.
  explicit UnixProcesses(Descriptors& descriptors) : descriptors_(descriptors) {}

  std::expected<void, std::string> launch(const ProcessRequest& request) override;
  std::expected<std::string, std::string> run(const ProcessRequest& request) override;

  std::expected<std::unique_ptr<WatchedProcess>, std::string> start(
      const ProcessRequest& request, std::function<void(const std::string& how)> ended) override;

  /// Starts a program like the others, but with standard output and standard error at the descriptor `output`, which
  /// stays the caller's; negative: at the null device. The caller waits for the process that it answers, or ends.
  [[nodiscard]] static std::expected<pid_t, std::string> startWithOutput(const ProcessRequest& request, int output);

 private:
  class Watched;
  using Ended = std::function<void(const std::string& how)>;

  std::expected<pid_t, std::string> launch(const ProcessRequest& request, int error, Ended ended);
  void reap();

  Descriptors& descriptors_;
  std::map<pid_t, Ended> launched_;  ///< not reaped yet; who is told of the end, if anybody
  Subscription ends_;                ///< from the first launch on
};

}  // namespace tallowin
