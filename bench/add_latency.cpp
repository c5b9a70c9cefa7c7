// How long programs take to add a desktop: from the moment that the program is started to the moment that the root
// window's _NET_NUMBER_OF_DESKTOPS is one more than at the start. Before each time it is as at the start.
//
// add_latency RUNS COMMAND...

#include <cstdlib>
#include <sys/wait.h>
#include <thread>

#include "bench/desktop_witness.h"
#include "bench/side_by_side.h"
#include "bench/stopwatch.h"

int main(int argc, char** argv) {
  using namespace tallowin::bench;
  using namespace std::chrono_literals;
  const Turns turns(argc, argv);
  const DesktopWitness witness("_NET_NUMBER_OF_DESKTOPS");
  const auto atStart = witness.current().value_or(0);
  const auto take = [&](std::size_t subject, std::size_t /*turn*/) -> std::optional<double> {
    if (!witness.set(atStart)) {
      return std::nullopt;
    }
    std::this_thread::sleep_for(200ms);  // until those who watch the number have seen it
    const Stopwatch stopwatch;
    const auto process = start(wordsFor(turns.commands[subject], 0));
    if (process == 0) {
      return std::nullopt;
    }
    const auto changed = witness.waitFor(atStart + 1);
    waitpid(process, nullptr, 0);
    return changed ? std::optional(stopwatch.until(*changed)) : std::nullopt;
  };
  const int status = turns.measure(take, turns.commands.size());
  return witness.set(atStart) ? status : EXIT_FAILURE;
}
