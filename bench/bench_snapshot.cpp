// How long a snapshot takes, and how that grows with the number of Spaces.

#include <benchmark/benchmark.h>
#include <string>

#include "core/space_provider.h"

namespace tallowin {
namespace {

/// A list of so many displays with so many Spaces each, every eighth one full-screen.
PropertyList list(std::int64_t displays, std::int64_t spacesEach) {
  auto all = PropertyList::array();
  std::int64_t id = 0;
  for (std::int64_t d = 0; d < displays; ++d) {
    auto spaces = PropertyList::array();
    for (std::int64_t s = 0; s < spacesEach; ++s) {
      ++id;
      PropertyList space = {{"ManagedSpaceID", id},
                            {"id64", id},
                            {"uuid", "00000000-0000-4000-8000-" + std::to_string(100000000000 + id)},
                            {"type", id % 8 == 0 ? 4 : 0}};
      if (id % 8 == 0) {
        space["pid"] = 1000 + id;
      }
      spaces.push_back(std::move(space));
    }
    const auto current = spaces.front();
    all.push_back({{"Display Identifier", "display " + std::to_string(d)},
                   {"Current Space", current},
                   {"Spaces", std::move(spaces)}});
  }
  return all;
}

void readDisplays(benchmark::State& state) {
  constexpr std::int64_t spacesEach = 10;
  const auto given = list(state.range(0) / spacesEach, spacesEach);
  for (auto _ : state) {
    benchmark::DoNotOptimize(SpaceProvider::readDisplays(given, "display 0"));
  }
}

BENCHMARK(readDisplays)->RangeMultiplier(10)->Range(10, 10000);

}  // namespace
}  // namespace tallowin
