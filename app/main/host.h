#pragma once

#include <expected>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "app/command_line.h"
#include "base/record_file.h"
#include "platform/channel/channel_folder.h"
#include "platform/platform.h"

namespace tallowin {

class X11Connection;

/// One platform, put together and kept alive.
class Host {
 public:
  virtual ~Host() = default;

  /// The services. Valid as long as the host.
  [[nodiscard]] virtual Platform platform() = 0;

  /// What the files of its preferences, and of everything else that the program keeps there, are written with.
  [[nodiscard]] virtual Storage& storage() = 0;

  /// Called once everything is in place, just before the program runs.
  virtual void begin() {}

  /// Called after the program has run, with its exit status. Answers the status that the process ends with.
  virtual int end(int status) { return status; }
};

/// A host, or one line that says why there is none and what to do, with the exit status that goes with it.
struct HostError {
  std::string message;
  int exitStatus;
};
using HostResult = std::expected<std::unique_ptr<Host>, HostError>;

/// A real desktop by X11, on this connection. `lock` as for makeHost(). A connection that is lost later stops the run
/// loop with `unavailable` and says so on standard error.
HostResult makeX11Host(const CommandLine& line, std::unique_ptr<InstanceLock> lock,
                       std::unique_ptr<X11Connection> connection);

/// No desktop: the window server's functions are looked for and not found.
HostResult makeNoneHost(const CommandLine& line, std::unique_ptr<InstanceLock> lock);

/// A simulated desktop in virtual time (--simulate) or in real time.
HostResult makeSimulatedHost(const CommandLine& line, std::unique_ptr<InstanceLock> lock);

/// Why there would be no desktop for the resident program that the command line stands for, as makeHost() would say;
/// nothing when it can be started. One that could only wait for a desktop is not started for somebody who waits for it.
[[nodiscard]] std::optional<HostError> whyNoDesktop(const CommandLine& line);

/// Whether the mode lets time pass, as those do that watch or wait.
[[nodiscard]] bool runsLoop(Mode mode);

/// The host that the command line asks for. With `lock` its process is the instance that other programs reach; `lock`
/// may be null.
HostResult makeHost(const CommandLine& line, std::unique_ptr<InstanceLock> lock);

}  // namespace tallowin
