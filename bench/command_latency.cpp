// How long programs take from being started to having ended.
//
// command_latency RUNS COMMAND...: in a command %i is 0 and 1 in turns, and %n 1 and 2.

#include "bench/side_by_side.h"
#include "bench/stopwatch.h"

int main(int argc, char** argv) {
  using namespace tallowin::bench;
  const Turns turns(argc, argv);
  const auto take = [&](std::size_t subject, std::size_t turn) -> std::optional<double> {
    auto words = wordsFor(turns.commands[subject], static_cast<std::uint32_t>(turn % 2));
    const Stopwatch stopwatch;
    return run(std::move(words)) ? std::optional(stopwatch.now()) : std::nullopt;
  };
  return turns.measure(take, turns.commands.size());
}
