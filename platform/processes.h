#pragma once

#include <expected>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tallowin {

/// A program to run.
struct ProcessRequest {
  std::string executable;              ///< absolute path
  std::vector<std::string> arguments;  ///< without the program's own name
  /// Added to this process's environment, replacing variables of the same name.
  std::map<std::string, std::string> addedEnvironment;
  std::string workingDirectory = {};  ///< absolute path of the folder that it starts in; empty for this process's own
};

/// Child processes (NSTask). Main thread only.
class Processes {
 public:
  virtual ~Processes() = default;

  /// Starts a program with standard input, output and error at the null device, and does not wait for it; it is reaped
  /// whenever it ends. The error is the system's description of why it could not be started.
  [[nodiscard]] virtual std::expected<void, std::string> launch(const ProcessRequest& request) = 0;

  /// Runs a program to its end and returns what it wrote to standard output; standard error goes to the null device.
  /// Blocks. The error is the system's description of why it could not be started.
  [[nodiscard]] virtual std::expected<std::string, std::string> run(const ProcessRequest& request) = 0;
};

/// A child process that is watched. Letting go of this leaves the process alone, and nobody is told of its end.
class WatchedProcess {
 public:
  virtual ~WatchedProcess() = default;

  /// Ends the process at once (SIGKILL).
  virtual void kill() = 0;
};

/// Child processes whose ends are told. Main thread only.
class WatchedProcesses {
 public:
  virtual ~WatchedProcesses() = default;

  /// Starts a program like Processes::launch(), but with standard error where this process has its own. `ended` is told
  /// once how it ended, in words ("exit status 1", "signal 11"). The error is the system's description of why it could
  /// not be started.
  [[nodiscard]] virtual std::expected<std::unique_ptr<WatchedProcess>, std::string> start(
      const ProcessRequest& request, std::function<void(const std::string& how)> ended) = 0;
};

}  // namespace tallowin
