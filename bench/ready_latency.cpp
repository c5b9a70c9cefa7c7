// How long programs take from being started to being ready: until another program, which is run again and again,
// succeeds in reaching them. They are ended after each time.
//
// ready_latency RUNS "START ? PROBE"...: in turns

#include <csignal>
#include <sys/wait.h>

#include "bench/side_by_side.h"
#include "bench/stopwatch.h"

namespace {

using namespace tallowin::bench;

constexpr double patience = 10'000;  // milliseconds

std::optional<double> measure(const std::vector<std::string>& program, const std::vector<std::string>& probe) {
  const Stopwatch stopwatch;
  const auto process = start(program, -1, Errors::hidden);
  bool ready = false;
  while (process != 0 && !ready && stopwatch.now() < patience) {
    ready = run(probe, Errors::hidden);
  }
  const auto time = stopwatch.now();
  if (process != 0) {
    ::kill(process, SIGTERM);
    ::waitpid(process, nullptr, 0);
  }
  for (const Stopwatch since; since.now() < patience && run(probe, Errors::hidden);) {
    // What it showed has not gone yet, and the next turn is not to find it.
  }
  return ready ? std::optional(time) : std::nullopt;
}

}  // namespace

int main(int argc, char** argv) {
  const Turns turns(argc, argv);
  const auto take = [&](std::size_t subject, std::size_t /*turn*/) -> std::optional<double> {
    const auto& command = turns.commands[subject];
    const auto mark = command.find(" ? ");
    return mark == std::string::npos
               ? std::nullopt
               : measure(wordsFor(command.substr(0, mark), 0), wordsFor(command.substr(mark + 3), 0));
  };
  return turns.measure(take, turns.commands.size());
}
