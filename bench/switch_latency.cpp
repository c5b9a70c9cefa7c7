#include <cstdlib>
#include <iostream>
#include <sys/wait.h>
#include <unistd.h>

#include "bench/desktop_witness.h"
#include "bench/side_by_side.h"

// How long programs take to switch desktops: from the moment that the program is started to the moment that the root
// window's _NET_CURRENT_DESKTOP has the new value, as a connection of its own is told.
//
// switch_latency RUNS COMMAND...: in a command %i stands for the desktop's index from 0 and %n for its number from 1.

namespace {

using tallowin::bench::DesktopWitness;
using Clock = DesktopWitness::Clock;

/// Milliseconds of one switch, from start to change; nothing when it did not take place. Waits for the program's end.
std::optional<double> measure(const DesktopWitness& witness, const std::string& command, std::uint32_t index) {
  const auto words = tallowin::bench::wordsFor(command, index);
  const auto began = Clock::now();
  const auto process = tallowin::bench::start(words);
  if (process == 0) {
    return std::nullopt;
  }
  alarm(10);  // a switch that never comes ends the whole measurement
  const auto changed = witness.waitFor(index);
  waitpid(process, nullptr, 0);
  alarm(0);
  return changed ? std::optional(std::chrono::duration<double, std::milli>(*changed - began).count()) : std::nullopt;
}

int run(std::size_t runs, const std::vector<std::string>& commands) {
  const DesktopWitness witness;
  auto current = witness.current();
  if (!current) {
    std::cerr << "switch_latency: no window manager tells its current desktop\n";
    return EXIT_FAILURE;
  }
  std::vector<std::vector<double>> times(commands.size());
  for (std::size_t turn = 0; turn < runs; ++turn) {
    for (std::size_t i = 0; i < commands.size(); ++i) {
      current = *current == 0 ? 1 : 0;
      const auto time = measure(witness, commands[i], *current);
      if (!time) {
        std::cerr << "switch_latency: no switch by: " << commands[i] << '\n';
        return EXIT_FAILURE;
      }
      times[i].push_back(*time);
    }
  }
  return tallowin::bench::print(commands, std::move(times)) ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) {
  const std::size_t runs = argc > 2 ? std::strtoul(argv[1], nullptr, 10) : 0;
  if (runs == 0) {
    std::cerr << "usage: switch_latency RUNS COMMAND...\n";
    return 64;
  }
  return run(runs, {argv + 2, argv + argc});
}
