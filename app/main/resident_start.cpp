#include "app/main/resident_start.h"

#include <cerrno>
#include <filesystem>
#include <sys/wait.h>
#include <unistd.h>

#include "app/main/host.h"
#include "app/main/lazy_dbus.h"
#include "platform/linux/unix_processes.h"
#include "platform/xdg/stand_in_programs.h"

namespace tallowin {

namespace {

namespace fs = std::filesystem;

constexpr auto busName = "com.quorvex.Tallowin";
/// The bus waits half a minute for a program whose unit systemd skips, as it does where it was told of no display.
constexpr Duration busPatience = std::chrono::seconds(1);

fs::path ownProgram() {
  std::error_code error;
  return fs::read_symlink("/proc/self/exe", error);
}

/// Whether this very program is the one that the bus and systemd would start, rather than another one or a build.
bool isInstalledWithService() {
  // It is in PREFIX/libexec/tallowin; the files are where packaging/install_placed.cmake puts them.
  const auto prefix = ownProgram().parent_path().parent_path().parent_path();
  std::error_code error;
  return fs::exists(prefix / "share/dbus-1/services/com.quorvex.Tallowin.service", error) &&
         fs::exists(prefix / "lib/systemd/user/tallowin.service", error);
}

/// Options that only this call knows of cannot be told to the bus.
bool isStartedWithOptions(const CommandLine& line) {
  const CommandLine plain;
  return line.home || line.scenario || line.demo || line.settingsTab || line.platform != plain.platform ||
         line.port != plain.port;
}

std::string wholePath(const fs::path& path) {
  std::error_code error;
  const auto whole = fs::absolute(path, error);
  return (error ? path : whole).string();
}

/// The options that say how the program is started. Its standard error is not this call's, so --verbose stays away.
std::vector<std::string> startArguments(const CommandLine& line) {
  std::vector<std::string> arguments;
  const auto add = [&](const char* option, const std::string& value) {
    arguments.insert(arguments.end(), {option, value});
  };
  if (line.home) {
    add("--home", wholePath(*line.home));
  }
  if (line.scenario) {
    add("--scenario", wholePath(*line.scenario));
  } else if (line.platform != PlatformChoice::automatic) {
    add("--platform", std::string(nameOf(line.platform)));
  }
  if (line.port != CommandLine().port) {
    add("--port", std::to_string(line.port));
  }
  if (line.settingsTab) {
    add("--settings", *line.settingsTab);
  }
  if (line.demo) {
    arguments.emplace_back("--demo");
  }
  return arguments;
}

}  // namespace

ResidentStart::ResidentStart(const CommandLine& line, std::string folder) : line_(line), folder_(std::move(folder)) {}

std::expected<void, std::string> ResidentStart::advance() {
  if (started_) {
    return checkProcess();
  }
  auto starting = std::make_unique<InstanceLock>(folder_, startLockName);
  if (starting->state() == InstanceLock::State::failed) {
    return std::unexpected(starting->error());
  }
  if (starting->state() == InstanceLock::State::taken || InstanceLock(folder_).state() == InstanceLock::State::taken) {
    return {};
  }
  starting_ = std::move(starting);
  started_ = true;
  return start();
}

std::expected<void, std::string> ResidentStart::start() {
  if (auto fault = whyNoDesktop(line_)) {
    return std::unexpected("not running, and not started: " + fault->message);
  }
  const auto* const module = loadDBusModule();
  if (module != nullptr && !isStartedWithOptions(line_) && isInstalledWithService() &&
      module->startService(busName, busPatience)) {
    return {};
  }
  const int journal = module != nullptr ? module->journalStream() : -1;
  const auto child = UnixProcesses::startWithOutput({.executable = ownProgram().string(),
                                                     .arguments = startArguments(line_),
                                                     .addedEnvironment = {},
                                                     .workingDirectory = homeFolder()},
                                                    journal);
  if (journal >= 0) {
    ::close(journal);
  }
  if (!child) {
    return std::unexpected("Tallowin could not be started: " + child.error());
  }
  process_ = *child;
  return {};
}

/// One that finds another instance ends well.
std::expected<void, std::string> ResidentStart::checkProcess() {
  int status = 0;
  if (process_ == 0 || ::waitpid(process_, &status, WNOHANG) != process_) {
    return {};
  }
  process_ = 0;
  if (WIFEXITED(status) && WEXITSTATUS(status) == 0) {
    return {};
  }
  return std::unexpected("Tallowin was started and ended at once; \"tallowin\" in a terminal tells why");
}

}  // namespace tallowin
