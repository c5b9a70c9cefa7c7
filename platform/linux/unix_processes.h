#pragma once

#include <set>
#include <sys/types.h>

#include "platform/descriptors.h"
#include "platform/processes.h"

namespace tallowin {

/// Child processes, each in a session of its own, with no signal blocked or ignored and none of this process's
/// descriptors. They live on when this process ends.
class UnixProcesses : public Processes {
 public:
  /// Launched processes are reaped while the main loop runs, and where it does not, at the next launch.
  explicit UnixProcesses(Descriptors& descriptors) : descriptors_(descriptors) {}

  std::expected<void, std::string> launch(const ProcessRequest& request) override;
  std::expected<std::string, std::string> run(const ProcessRequest& request) override;

  /// Starts a program like the others, but with standard output and standard error at the descriptor `output`, which
  /// stays the caller's; negative: at the null device. The caller waits for the process that it answers, or ends.
  [[nodiscard]] static std::expected<pid_t, std::string> startWithOutput(const ProcessRequest& request, int output);

 private:
  void reap();

  Descriptors& descriptors_;
  std::set<pid_t> launched_;  ///< not reaped yet
  Subscription ends_;         ///< from the first launch on
};

}  // namespace tallowin
