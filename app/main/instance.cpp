#include "app/main/instance.h"

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <expected>
#include <filesystem>
#include <iostream>
#include <string>
#include <sys/types.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "app/main/host.h"
#include "app/main/lazy_dbus.h"
#include "commands/cli/request_words.h"
#include "commands/command_url.h"
#include "commands/outcome.h"
#include "platform/channel/channel_client.h"
#include "platform/linux/unix_processes.h"
#include "platform/xdg/stand_in_programs.h"

namespace tallowin {

namespace {

using namespace std::chrono_literals;
using SteadyClock = std::chrono::steady_clock;
using HandOverOutcome = HandOver::Outcome;
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
  return line.home || line.scenario || line.demo || line.settingsTab || line.noUi || line.platform != plain.platform ||
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
  if (line.noUi) {
    arguments.emplace_back("--no-ui");
  }
  return arguments;
}

/// Starts the resident program in the background, for a call that is to be handed over to it: by the user's bus, and
/// with it by systemd, where this program is installed with the files that they need, else as a process of a session of
/// its own. However many calls want it at once, one of them starts it. Main thread only.
class ResidentStart {
 public:
  /// `folder` is where the instance will listen; `line` says how it is to be started.
  ResidentStart(const CommandLine& line, std::string folder) : line_(line), folder_(std::move(folder)) {}

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

/// Another instance may be about to listen, or about to end.
constexpr auto patience = 5s;
constexpr auto pause = 1ms;

Instance ended(int status, const std::string& message = "") {
  if (!message.empty()) {
    std::cerr << "tallowin: " << message << '\n';
  }
  return {nullptr, status};
}

/// Nothing when there is still nobody who answers.
std::optional<Instance> handedOver(const std::string& folder, const std::vector<std::string>& request) {
  auto result = handOver(folder, request);
  switch (result.outcome) {
    case HandOverOutcome::answered:
      std::cerr << remarksOn(result.answerer, TALLOWIN_VERSION, std::getenv("DISPLAY"));
      return ended(result.status);
    case HandOverOutcome::unreachable:
      return ended(exit_status::unavailable, result.why);
    case HandOverOutcome::notRunning:
      break;
  }
  return std::nullopt;
}

/// What becomes of a request when nobody runs and nobody is to be started for it; nothing when somebody is.
std::optional<Instance> refusal(const CommandLine& line, const RequestWords& words) {
  if (words.kind == RequestKind::doctor) {
    return Instance();
  }
  if (line.noStart || words.nature() != RequestNature::action) {
    return ended(exit_status::unavailable, "not running; \"tallowin\" starts it");
  }
  if (words.kind != RequestKind::url) {
    return std::nullopt;
  }
  const auto command = commandFromText(words.operands.front());
  return command ? std::nullopt : std::optional(ended(exitStatus(command.error()), command.error().message));
}

/// Makes this process the instance, or finds that there is one.
Instance becomeInstance(const std::string& folder, const CommandLine& line) {
  const auto end = SteadyClock::now() + patience;
  while (SteadyClock::now() < end) {
    auto lock = std::make_unique<InstanceLock>(folder);
    if (lock->state() == InstanceLock::State::failed) {
      std::cerr << "tallowin: no other program can reach this one: " << lock->error() << '\n';
      return {};
    }
    if (lock->state() == InstanceLock::State::held) {
      return {std::move(lock), std::nullopt};
    }
    if (auto answered = handedOver(folder, line.request)) {
      return *std::move(answered);
    }
    std::this_thread::sleep_for(pause);
  }
  return ended(exit_status::unavailable, "the running tallowin does not answer");
}

/// Whether the instance in the folder has Spaces to do something to.
bool seesSpaces(const std::string& folder) {
  const auto asked = handOver(folder, {"list"}, {.silent = true});
  return asked.outcome == HandOverOutcome::answered && asked.status == exit_status::success;
}

/// Starts the instance in the background, and hands the request over as soon as it has Spaces.
Instance startAndAsk(const std::string& folder, const CommandLine& line) {
  ResidentStart start(line, folder);
  const auto end = SteadyClock::now() + patience;
  for (; SteadyClock::now() < end; std::this_thread::sleep_for(pause)) {
    if (const auto advanced = start.advance(); !advanced) {
      return ended(exit_status::unavailable, advanced.error());
    }
    if (seesSpaces(folder)) {
      if (auto answered = handedOver(folder, line.request)) {
        return *std::move(answered);
      }
    }
  }
  return ended(exit_status::unavailable, "Tallowin was started, but there are no desktops yet; nothing was done");
}

/// Asks whoever is about to listen, or to end; starts the instance when there is nobody.
Instance ask(const std::string& folder, const CommandLine& line, const RequestWords& words) {
  const auto end = SteadyClock::now() + patience;
  for (; SteadyClock::now() < end; std::this_thread::sleep_for(pause)) {
    if (auto answered = handedOver(folder, line.request)) {
      return *std::move(answered);
    }
    if (InstanceLock(folder).state() != InstanceLock::State::taken) {
      auto refused = refusal(line, words);
      return refused ? *std::move(refused) : startAndAsk(folder, line);
    }
  }
  return ended(exit_status::unavailable, "the running tallowin does not answer");
}

std::string folderOf(const CommandLine& line) {
  const auto home = line.home ? std::optional(std::filesystem::absolute(*line.home).string()) : std::nullopt;
  return channelFolder(home ? home->c_str() : nullptr);
}

}  // namespace

Instance findInstance(const CommandLine& line) {
  const auto folder = folderOf(line);
  const auto words = readRequestWords(line.request);
  if (!words) {
    return ended(exit_status::usage, words.error());
  }
  return words->kind == RequestKind::start && !line.noStart ? becomeInstance(folder, line) : ask(folder, line, *words);
}

void waitForSettings(const CommandLine& line) {
  constexpr int milliseconds = 1000;
  // Whatever an instance is asked, even nothing, it looks at its settings first.
  static_cast<void>(handOver(folderOf(line), {}, {.patience = milliseconds, .silent = true}));
}

}  // namespace tallowin
