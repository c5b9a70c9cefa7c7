// How long programs that print a line for every change of the desktop take to do so: from the moment that somebody else
// asks the window manager for another desktop to the arrival of the line.
//
// watch_latency RUNS COMMAND...

#include <algorithm>
#include <array>
#include <csignal>
#include <fcntl.h>
#include <iostream>
#include <iterator>
#include <memory>
#include <poll.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "bench/desktop_witness.h"
#include "bench/side_by_side.h"
#include "bench/stopwatch.h"

namespace {

using namespace tallowin::bench;
using namespace std::chrono_literals;

/// A program that goes on printing.
class Watcher {
 public:
  explicit Watcher(const std::string& command) {
    std::array<int, 2> ends{};
    if (!command.empty() && ::pipe2(ends.data(), O_CLOEXEC) == 0) {
      process_ = start(wordsFor(command, 0), ends[1]);
      ::close(ends[1]);
      output_ = ends[0];
    }
  }
  ~Watcher() {
    if (process_ > 0) {
      ::kill(process_, SIGTERM);
      ::waitpid(process_, nullptr, 0);
    }
    ::close(output_);
  }
  Watcher(const Watcher&) = delete;
  Watcher& operator=(const Watcher&) = delete;

  /// Negative when there is no program.
  [[nodiscard]] int output() const { return output_; }

  /// Takes what has been printed; false when there was nothing.
  [[nodiscard]] bool take() const {
    char bytes[65536];
    pollfd ready{output_, POLLIN, 0};
    return ::poll(&ready, 1, 0) > 0 && ::read(output_, bytes, sizeof bytes) > 0;
  }

 private:
  pid_t process_ = 0;
  int output_ = -1;
};

/// Adds how long each watcher took. False when one stays silent for a second.
bool measure(const DesktopWitness& witness, const std::vector<std::unique_ptr<Watcher>>& watchers, Samples& samples) {
  const auto index = witness.other();
  const Stopwatch stopwatch;
  witness.ask(index);
  std::vector<pollfd> wanted;
  std::ranges::transform(watchers, std::back_inserter(wanted),
                         [](const auto& watcher) { return pollfd{watcher->output(), POLLIN, 0}; });
  while (std::ranges::any_of(wanted, [](const pollfd& output) { return output.fd >= 0; })) {
    if (::poll(wanted.data(), wanted.size(), 1000) <= 0) {
      return false;
    }
    const auto time = stopwatch.now();
    for (std::size_t i = 0; i < watchers.size(); ++i) {
      if (wanted[i].fd >= 0 && wanted[i].revents != 0) {
        if (!watchers[i]->take()) {
          return false;
        }
        wanted[i].fd = -1;
        samples.add(i, time);
      }
    }
  }
  return true;
}

void drain(const std::vector<std::unique_ptr<Watcher>>& watchers) {
  std::this_thread::sleep_for(100ms);  // whatever they still have to say about the last change
  for (const auto& watcher : watchers) {
    while (watcher->take()) {
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  const Turns turns(argc, argv);
  const DesktopWitness witness;
  std::vector<std::unique_ptr<Watcher>> watchers;
  for (const auto& command : turns.commands) {
    watchers.push_back(std::make_unique<Watcher>(command));
  }
  std::this_thread::sleep_for(1s);  // until all of them watch
  Samples samples;
  for (std::size_t turn = 0; turn < turns.runs; ++turn) {
    drain(watchers);
    if (!measure(witness, watchers, samples)) {
      std::cerr << "watch_latency: a change was not printed\n";
      return 1;
    }
  }
  samples.print();
  return 0;
}
