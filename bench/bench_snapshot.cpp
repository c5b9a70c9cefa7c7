// How long a snapshot takes, and how that grows with the number of Spaces.

#include <benchmark/benchmark.h>
#include <string>

#include "core/space_provider.h"

namespace tallowin {
namespace {

/// So many displays with so many Spaces each, every eighth one full-screen.
DesktopReading reading(std::int64_t displays, std::int64_t spacesEach) {
  DesktopReading all;
  std::int64_t id = 0;
  for (std::int64_t d = 0; d < displays; ++d) {
    DesktopDisplay display{"display " + std::to_string(d), {}, id + 1, d == 0};
    for (std::int64_t s = 0; s < spacesEach; ++s) {
      ++id;
      display.spaces.push_back(
          {id, "00000000-0000-4000-8000-" + std::to_string(100000000000 + id), s, id % 8 == 0, std::nullopt});
    }
    all.displays.push_back(std::move(display));
  }
  return all;
}

void readDisplays(benchmark::State& state) {
  constexpr std::int64_t spacesEach = 10;
  const auto given = reading(state.range(0) / spacesEach, spacesEach);
  for (auto _ : state) {
    benchmark::DoNotOptimize(SpaceProvider::displays(given));
  }
}

BENCHMARK(readDisplays)->RangeMultiplier(10)->Range(10, 10000);

}  // namespace
}  // namespace tallowin
