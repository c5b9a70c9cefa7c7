// How long programs take to switch desktops: from the moment that the program is started to the moment that the root
// window's _NET_CURRENT_DESKTOP has the new value, as a connection of its own is told.
//
// switch_latency RUNS COMMAND...: in a command %i stands for the desktop's index from 0 and %n for its number from 1.

#include <sys/wait.h>

#include "bench/desktop_witness.h"
#include "bench/side_by_side.h"
#include "bench/stopwatch.h"

int main(int argc, char** argv) {
  using namespace tallowin::bench;
  const Turns turns(argc, argv);
  const DesktopWitness witness;
  const auto take = [&](std::size_t subject, std::size_t /*turn*/) -> std::optional<double> {
    const auto index = witness.other();
    auto words = wordsFor(turns.commands[subject], index);
    const Stopwatch stopwatch;
    const auto process = start(std::move(words));
    if (process == 0) {
      return std::nullopt;
    }
    const auto changed = witness.waitFor(index);
    waitpid(process, nullptr, 0);
    return changed ? std::optional(stopwatch.until(*changed)) : std::nullopt;
  };
  return turns.measure(take, turns.commands.size());
}
