#pragma once

#include <expected>
#include <memory>
#include <string>
#include <sys/types.h>

#include "app/command_line.h"
#include "platform/channel/channel_folder.h"

namespace tallowin {

/// Starts the resident program in the background, for a call that is to be handed over to it: by the user's bus, and
/// with it by systemd, where this program is installed with the files that they need, else as a process of a session of
/// its own. However many calls want it at once, one of them starts it. Main thread only.
class ResidentStart {
 public:
  /// `folder` is where the instance will listen; `line` says how it is to be started.
  ResidentStart(const CommandLine& line, std::string folder);

  /// Starts it, unless it was started, another call is about to start it, or it runs already. Called again and again
  /// until it answers. The error is one line that says why it will not.
  [[nodiscard]] std::expected<void, std::string> advance();

 private:
  [[nodiscard]] std::expected<void, std::string> start();
  [[nodiscard]] std::expected<void, std::string> checkProcess();

  const CommandLine& line_;
  const std::string folder_;
  std::unique_ptr<InstanceLock> starting_;  ///< held from the start until the call ends
  bool started_ = false;
  pid_t process_ = 0;  ///< zero unless it is this process's child
};

}  // namespace tallowin
