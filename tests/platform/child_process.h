#pragma once

#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tallowin {

/// A program that runs beside a test, found in $PATH, and is ended with this object. Its messages are dropped; what it
/// writes to the descriptor of number `lineDescriptor` can be read.
class ChildProcess {
 public:
  static constexpr int lineDescriptor = 9;

  explicit ChildProcess(std::vector<std::string> arguments) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
      return;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], lineDescriptor);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    std::vector<char*> pointers;
    for (auto& argument : arguments) {
      pointers.push_back(argument.data());
    }
    pointers.push_back(nullptr);
    if (posix_spawnp(&process_, pointers[0], &actions, nullptr, pointers.data(), environ) != 0) {
      process_ = 0;
    }
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    lines_ = ends[0];
  }

  ~ChildProcess() {
    stop();
    close(lines_);
  }
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// The next line, without its end; empty once the program has ended.
  std::string readLine() {
    std::string line;
    char byte = 0;
    while (process_ > 0 && read(lines_, &byte, 1) == 1 && byte != '\n') {
      line += byte;
    }
    return line;
  }

  /// Waits for it to end by itself. Its exit status, or -1.
  int wait() {
    int status = 0;
    const auto process = std::exchange(process_, 0);
    return process > 0 && waitpid(process, &status, 0) == process && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  void stop() {
    if (process_ > 0) {
      kill(process_, SIGTERM);
      wait();
    }
  }

 private:
  pid_t process_ = 0;
  int lines_ = -1;
};

}  // namespace tallowin
