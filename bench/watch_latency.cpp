#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <iostream>
#include <poll.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "bench/desktop_witness.h"
#include "bench/side_by_side.h"

// How long programs that print a line for every change of the desktop take to do so: from the moment that the root
// window's _NET_CURRENT_DESKTOP has changed, as a connection of its own is told, to the arrival of the line.
//
// watch_latency RUNS COMMAND...

namespace {

using tallowin::bench::DesktopWitness;
using Clock = DesktopWitness::Clock;
using namespace std::chrono_literals;

/// A program that goes on printing.
class Watcher {
 public:
  explicit Watcher(const std::string& command) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) == 0) {
      process_ = tallowin::bench::start(tallowin::bench::wordsFor(command, 0), ends[1]);
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
bool measure(const DesktopWitness& witness, const std::vector<std::unique_ptr<Watcher>>& watchers, std::uint32_t index,
             std::vector<std::vector<double>>& times) {
  witness.ask(index);
  const auto changed = witness.waitFor(index);
  std::vector<bool> seen(watchers.size(), false);
  for (std::size_t left = watchers.size(); changed && left > 0;) {
    std::vector<pollfd> wanted;
    for (std::size_t i = 0; i < watchers.size(); ++i) {
      wanted.push_back({seen[i] ? -1 : watchers[i]->output(), POLLIN, 0});
    }
    if (::poll(wanted.data(), wanted.size(), 1000) <= 0) {
      return false;
    }
    const auto now = Clock::now();
    for (std::size_t i = 0; i < watchers.size(); ++i) {
      if (wanted[i].revents != 0 && watchers[i]->take()) {
        seen[i] = true;
        --left;
        times[i].push_back(std::chrono::duration<double, std::milli>(now - *changed).count());
      }
    }
  }
  return changed.has_value();
}

void drain(const std::vector<std::unique_ptr<Watcher>>& watchers) {
  std::this_thread::sleep_for(100ms);  // whatever they still have to say about the last change
  for (const auto& watcher : watchers) {
    while (watcher->take()) {
    }
  }
}

int run(std::size_t runs, const std::vector<std::string>& commands) {
  const DesktopWitness witness;
  std::vector<std::unique_ptr<Watcher>> watchers;
  for (const auto& command : commands) {
    watchers.push_back(std::make_unique<Watcher>(command));
  }
  std::this_thread::sleep_for(1s);  // until all of them watch
  std::vector<std::vector<double>> times(commands.size());
  auto current = witness.current();
  for (std::size_t turn = 0; turn < runs && current; ++turn) {
    drain(watchers);
    current = *current == 0 ? 1 : 0;
    if (!measure(witness, watchers, *current, times)) {
      std::cerr << "watch_latency: a change was not printed\n";
      return EXIT_FAILURE;
    }
  }
  return tallowin::bench::print(commands, std::move(times)) ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) {
  const std::size_t runs = argc > 2 ? std::strtoul(argv[1], nullptr, 10) : 0;
  if (runs == 0) {
    std::cerr << "usage: watch_latency RUNS COMMAND...\n";
    return 64;
  }
  return run(runs, {argv + 2, argv + argc});
}
