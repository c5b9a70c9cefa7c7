#pragma once

#include <memory>
#include <optional>

#include "app/command_line.h"
#include "platform/channel/instance_lock.h"

namespace tallowin {

/// Who does what the command line asks of the resident program.
struct Instance {
  /// This process, if set.
  std::unique_ptr<InstanceLock> lock;
  /// Somebody else, or nobody: what to end with.
  std::optional<int> status;
};

/// Makes this process the instance, if the command line asks for one and there is none; else hands the request over.
/// Mistakes are said on standard error. Neither a lock nor a status: there is no telling whether another one runs, and
/// this process is to run without a channel.
[[nodiscard]] Instance findInstance(const CommandLine& line);

}  // namespace tallowin
