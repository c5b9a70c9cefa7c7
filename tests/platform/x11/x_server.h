#pragma once

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace tallowin {

/// A virtual X server of 640 by 480 pixels with nothing running on it, which $DISPLAY names while this exists.
class XServer {
 public:
  XServer() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
      return;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], displayDescriptor);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    std::string arguments[] = {"Xvfb",      "-displayfd", std::to_string(displayDescriptor),
                               "-screen",   "0",          "640x480x24",
                               "-nolisten", "tcp",        "-noreset"};
    char* pointers[std::size(arguments) + 1] = {};
    for (std::size_t i = 0; i < std::size(arguments); ++i) {
      pointers[i] = arguments[i].data();
    }
    const bool started = posix_spawnp(&process_, "Xvfb", &actions, nullptr, pointers, environ) == 0;
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    if (started) {
      readDisplay(ends[0]);
    }
    close(ends[0]);
  }

  ~XServer() {
    stop();
    unsetenv("DISPLAY");
  }
  XServer(const XServer&) = delete;
  XServer& operator=(const XServer&) = delete;

  /// Whether there is a server: Xvfb may not be installed.
  [[nodiscard]] bool running() const { return !display_.empty(); }

  void stop() {
    if (process_ > 0) {
      kill(process_, SIGTERM);
      waitpid(process_, nullptr, 0);
      process_ = 0;
    }
  }

 private:
  static constexpr int displayDescriptor = 9;

  void readDisplay(int descriptor) {
    std::string number;
    char byte = 0;
    while (read(descriptor, &byte, 1) == 1 && byte != '\n') {
      number += byte;
    }
    display_ = number.empty() ? "" : ":" + number;
    setenv("DISPLAY", display_.c_str(), 1);
  }

  pid_t process_ = 0;
  std::string display_;
};

}  // namespace tallowin
