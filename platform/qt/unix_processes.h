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

 private:
  void reap();

  Descriptors& descriptors_;
  std::set<pid_t> launched_;  ///< not reaped yet
  Subscription ends_;         ///< from the first launch on
};

}  // namespace tallowin
