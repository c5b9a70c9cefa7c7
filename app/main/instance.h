#pragma once

#include <memory>
#include <optional>

#include "app/command_line.h"
#include "platform/channel/channel_folder.h"

namespace tallowin {

/// Who does what the command line asks of the resident program.
struct Instance {
  /// This process, if set.
  std::unique_ptr<InstanceLock> lock;
  /// Somebody else, or nobody: what to end with.
  std::optional<int> status;
};

/// Makes this process the instance, if the command line asks for nothing more and there is none. Else hands the request
/// over, to an instance that is started in the background if the request does something and there is none. Mistakes are
/// said on standard error. Neither a lock nor a status: there is no telling whether another one runs, and
/// this process is to run without a channel; or it is to examine what there is, as nobody runs.
[[nodiscard]] Instance findInstance(const CommandLine& line);

/// Waits until the running instance, if there is one, uses the settings as they are in its file; a second at most.
void waitForSettings(const CommandLine& line);

}  // namespace tallowin
