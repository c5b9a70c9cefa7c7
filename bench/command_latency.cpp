#include <chrono>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <sys/wait.h>

#include "bench/side_by_side.h"

// How long programs take from being started to having ended.
//
// command_latency RUNS COMMAND...: in a command %i is 0 and 1 in turns, and %n 1 and 2.

namespace {

std::optional<double> measure(const std::string& command, std::uint32_t index) {
  using Clock = std::chrono::steady_clock;
  const auto words = tallowin::bench::wordsFor(command, index);
  const auto began = Clock::now();
  const auto process = tallowin::bench::start(words);
  int status = 0;
  if (process == 0 || waitpid(process, &status, 0) != process || status != 0) {
    return std::nullopt;
  }
  return std::chrono::duration<double, std::milli>(Clock::now() - began).count();
}

}  // namespace

int main(int argc, char** argv) {
  const std::size_t runs = argc > 2 ? std::strtoul(argv[1], nullptr, 10) : 0;
  if (runs == 0) {
    std::cerr << "usage: command_latency RUNS COMMAND...\n";
    return 64;
  }
  const std::vector<std::string> commands(argv + 2, argv + argc);
  std::vector<std::vector<double>> times(commands.size());
  for (std::size_t turn = 0; turn < runs; ++turn) {
    for (std::size_t i = 0; i < commands.size(); ++i) {
      const auto time = measure(commands[i], static_cast<std::uint32_t>(turn % 2));
      if (!time) {
        std::cerr << "command_latency: failed: " << commands[i] << '\n';
        return EXIT_FAILURE;
      }
      times[i].push_back(*time);
    }
  }
  return tallowin::bench::print(commands, std::move(times)) ? EXIT_SUCCESS : EXIT_FAILURE;
}
