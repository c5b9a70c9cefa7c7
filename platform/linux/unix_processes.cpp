#include "platform/linux/unix_processes.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <spawn.h>
#include <string_view>
#include <sys/eventfd.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

#include "platform/pinned.h"

namespace tallowin {

namespace {

constexpr auto nullDevice = "/dev/null";

/// Null-terminated pointers into the texts, as C functions take them.
std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (auto& text : texts) {
    pointers.push_back(text.data());
  }
  pointers.push_back(nullptr);
  return pointers;
}

/// This process's environment with some variables added or replaced.
std::vector<std::string> environmentWith(const std::map<std::string, std::string>& added) {
  std::vector<std::string> variables;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    const std::string_view text = *variable;
    if (!added.contains(std::string(text.substr(0, text.find('='))))) {
      variables.emplace_back(text);
    }
  }
  for (const auto& [name, value] : added) {
    variables.push_back(name + "=" + value);
  }
  return variables;
}

/// Where a child's standard output and standard error go: a descriptor, or a negative number for the null device.
struct ChildOutput {
  int out = -1;
  int error = -1;
};

/// How a child begins: what POSIX keeps in two objects.
struct Beginning : private Pinned {
  Beginning(const std::string& workingDirectory, const ChildOutput& output) {
    posix_spawn_file_actions_init(&actions);
    // First, lest it be one of the descriptors that the others replace.
    open(STDOUT_FILENO, output.out);
    open(STDERR_FILENO, output.error);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, nullDevice, O_RDONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
    if (!workingDirectory.empty()) {
      posix_spawn_file_actions_addchdir_np(&actions, workingDirectory.c_str());
    }

    posix_spawnattr_init(&attributes);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes, &signals);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes, &signals);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ~Beginning() {
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
  }

  void open(int descriptor, int target) {
    if (target >= 0) {
      posix_spawn_file_actions_adddup2(&actions, target, descriptor);
    } else {
      posix_spawn_file_actions_addopen(&actions, descriptor, nullDevice, O_WRONLY, 0);
    }
  }

  posix_spawn_file_actions_t actions{};
  posix_spawnattr_t attributes{};
};

std::expected<pid_t, std::string> spawn(const ProcessRequest& request, const ChildOutput& output) {
  const Beginning beginning(request.workingDirectory, output);
  auto arguments = request.arguments;
  arguments.insert(arguments.begin(), request.executable);
  auto environment = environmentWith(request.addedEnvironment);
  pid_t child = 0;
  const int error = ::posix_spawn(&child, request.executable.c_str(), &beginning.actions, &beginning.attributes,
                                  pointersTo(arguments).data(), pointersTo(environment).data());
  if (error == 0) {
    return child;
  }
  std::error_code ignored;
  return std::unexpected(error == ENOENT && !std::filesystem::exists(request.executable, ignored)
                             ? "there is no such program"
                             : std::generic_category().message(error));
}

std::string readToEnd(int descriptor) {
  std::string text;
  char bytes[4096];
  for (;;) {
    const auto count = ::read(descriptor, bytes, sizeof bytes);
    if (count > 0) {
      text.append(bytes, static_cast<std::size_t>(count));
    } else if (count == 0 || errno != EINTR) {
      return text;
    }
  }
}

// A signal handler has no context, so where it writes to has to be global. Blocking the signal and reading it from a
// descriptor would not do: a thread in which it is not blocked would swallow it.
std::atomic<int> wakeUp = -1;
static_assert(std::atomic<int>::is_always_lock_free);

void childEnded(int /*signal*/) {
  const int before = errno;
  ::eventfd_write(wakeUp, 1);
  errno = before;
}

/// Runs `onEnd` on the main thread after child processes of this process have ended, once for any number of them, until
/// the subscription is let go of. At most one at a time. Nothing when the system refuses.
Subscription onChildEnds(Descriptors& descriptors, std::function<void()> onEnd) {
  const int descriptor = ::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
  if (descriptor < 0) {
    return {};
  }
  wakeUp = descriptor;
  struct sigaction action{};
  struct sigaction before{};
  action.sa_handler = childEnded;
  action.sa_flags = SA_RESTART | SA_NOCLDSTOP;
  ::sigaction(SIGCHLD, &action, &before);
  // Owned by the subscription alone; a function object has to be copyable.
  auto watch =
      std::make_shared<Subscription>(descriptors.watchReadable(descriptor, [descriptor, onEnd = std::move(onEnd)] {
        eventfd_t ignored = 0;
        ::eventfd_read(descriptor, &ignored);
        onEnd();
      }));
  return Subscription([descriptor, watch, before] {
    watch->cancel();
    ::sigaction(SIGCHLD, &before, nullptr);
    wakeUp = -1;
    ::close(descriptor);
  });
}

}  // namespace

/// A process until it has been reaped, as its number may be another one's then.
class UnixProcesses::Watched : public WatchedProcess, Pinned {
 public:
  Watched(UnixProcesses& processes, pid_t child) : processes_(processes), child_(child) {}
  ~Watched() override {
    if (const auto found = processes_.launched_.find(child_); found != processes_.launched_.end()) {
      found->second = nullptr;
    }
  }

  void kill() override {
    if (processes_.launched_.contains(child_)) {
      ::kill(child_, SIGKILL);
    }
  }

 private:
  UnixProcesses& processes_;
  const pid_t child_;
};

std::expected<void, std::string> UnixProcesses::launch(const ProcessRequest& request) {
  const auto child = launch(request, -1, nullptr);
  return child ? std::expected<void, std::string>() : std::unexpected(child.error());
}

std::expected<std::unique_ptr<WatchedProcess>, std::string> UnixProcesses::start(const ProcessRequest& request,
                                                                                 Ended ended) {
  const auto child = launch(request, STDERR_FILENO, std::move(ended));
  if (!child) {
    return std::unexpected(child.error());
  }
  return std::make_unique<Watched>(*this, *child);
}

std::expected<pid_t, std::string> UnixProcesses::launch(const ProcessRequest& request, int error, Ended ended) {
  if (!ends_) {
    ends_ = onChildEnds(descriptors_, [this] { reap(); });
  }
  reap();
  auto child = spawn(request, {.out = -1, .error = error});
  if (child) {
    launched_.emplace(*child, std::move(ended));
  }
  return child;
}

std::expected<std::string, std::string> UnixProcesses::run(const ProcessRequest& request) {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) {
    return std::unexpected(std::generic_category().message(errno));
  }
  const auto child = spawn(request, {.out = ends[1]});
  ::close(ends[1]);
  auto output = readToEnd(ends[0]);
  ::close(ends[0]);
  if (!child) {
    return std::unexpected(child.error());
  }
  while (::waitpid(*child, nullptr, 0) < 0 && errno == EINTR) {
  }
  return output;
}

std::expected<pid_t, std::string> UnixProcesses::startWithOutput(const ProcessRequest& request, int output) {
  return spawn(request, {output, output});
}

/// Only those of launch(): others wait for their own.
void UnixProcesses::reap() {
  std::vector<std::pair<Ended, std::string>> ended;
  std::erase_if(launched_, [&ended](const auto& launched) {
    int status = 0;
    const auto reaped = ::waitpid(launched.first, &status, WNOHANG);
    if (reaped > 0 && launched.second) {
      ended.emplace_back(launched.second, WIFSIGNALED(status) ? "signal " + std::to_string(WTERMSIG(status))
                                                              : "exit status " + std::to_string(WEXITSTATUS(status)));
    }
    return reaped != 0;
  });
  for (const auto& [tell, how] : ended) {
    tell(how);
  }
}

}  // namespace tallowin
