// How long it takes to make the contents of the Spaces out of a list of windows, and how that grows with their number.
// What the desktop takes to answer is not part of it.

#include <benchmark/benchmark.h>
#include <string>

#include "windows/space_contents.h"

namespace tallowin {
namespace {

constexpr std::int64_t windowsEach = 5;  // of an application
constexpr std::int64_t spaces = 10;

std::vector<DesktopWindow> list(std::int64_t windows) {
  std::vector<DesktopWindow> all;
  for (std::int64_t i = 0; i < windows; ++i) {
    all.push_back({.id = static_cast<WindowNumber>(i),
                   .pid = static_cast<ProcessID>(1 + i / windowsEach),
                   .ownerName = "Application",
                   .title = "Window " + std::to_string(i),
                   .frame = {{10, 20}, {640, 480}},
                   .layer = 0,
                   .alpha = 1,
                   .spaces = std::nullopt});
  }
  return all;
}

void readContents(benchmark::State& state) {
  const std::optional given = list(state.range(0));
  const SpaceContentsLookups lookups{
      0, [](ProcessID pid) { return RunningApplication{pid, "org.example.Application", "Application"}; },
      [](WindowNumber window) { return std::vector{static_cast<ManagedSpaceID>(1 + window % spaces)}; }};
  for (auto _ : state) {
    benchmark::DoNotOptimize(readSpaceContents(given, lookups));
  }
}

BENCHMARK(readContents)->RangeMultiplier(10)->Range(10, 10000);

}  // namespace
}  // namespace tallowin
