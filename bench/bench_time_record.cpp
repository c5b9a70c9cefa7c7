// How long a record of the times of thirty Spaces takes to be loaded from the disk, summed up, exported and made into
// text again, and how that grows with the number of days. Ten years are 3,650.

#include <benchmark/benchmark.h>
#include <filesystem>
#include <fstream>

#include "automation/time_record.h"
#include "platform/linux/event_loop.h"
#include "platform/linux/unix_files.h"

namespace tallowin {
namespace {

constexpr CalendarDay lastDay{2026, 3, 2};
constexpr int spaces = 30;

TimeRecord recordOf(std::int64_t days) {
  TimeRecord record;
  for (std::int64_t day = 0; day < days; ++day) {
    auto& times = record[dayKey(daysBefore(lastDay, day))];
    for (int space = 0; space < spaces; ++space) {
      times["5ACE0000-0000-4000-8000-0000000000" + std::to_string(space + 10)] =
          100.000123 + static_cast<double>(day * 31 + space * 977 % 1000) / 7;
    }
  }
  return record;
}

class RecordOnDisk {
 public:
  explicit RecordOnDisk(std::int64_t days) {
    std::string pattern = (std::filesystem::temp_directory_path() / "tallowin-bench-XXXXXX").string();
    folder_ = ::mkdtemp(pattern.data());
    std::ofstream(folder_ / "stats.json") << jsonText(recordOf(days));
  }
  ~RecordOnDisk() { std::filesystem::remove_all(folder_); }
  RecordOnDisk(const RecordOnDisk&) = delete;
  RecordOnDisk& operator=(const RecordOnDisk&) = delete;

  [[nodiscard]] TimeRecord load() {
    return timeRecordFromJSON(files_.read(folder_ / "stats.json").value_or("")).value_or(TimeRecord());
  }

 private:
  std::filesystem::path folder_;
  EventLoop descriptors_;
  UnixFiles files_{descriptors_};
};

std::string nameOf(const std::string& id) {
  return "Space " + id.substr(id.size() - 2);
}

void load(benchmark::State& state) {
  RecordOnDisk disk(state.range(0));
  for (auto _ : state) {
    benchmark::DoNotOptimize(disk.load());
  }
}

void totals(benchmark::State& state) {
  const auto record = recordOf(state.range(0));
  for (auto _ : state) {
    benchmark::DoNotOptimize(sumOfDays(record, lastDay, state.range(0)));
  }
}

void exportCSV(benchmark::State& state) {
  const auto record = recordOf(state.range(0));
  for (auto _ : state) {
    benchmark::DoNotOptimize(csvText(record, nameOf));
  }
}

void encode(benchmark::State& state) {
  const auto record = recordOf(state.range(0));
  for (auto _ : state) {
    benchmark::DoNotOptimize(jsonText(record));
  }
}

void loadSumAndExport(benchmark::State& state) {
  RecordOnDisk disk(state.range(0));
  for (auto _ : state) {
    const auto record = disk.load();
    benchmark::DoNotOptimize(sumOfDays(record, lastDay, state.range(0)));
    benchmark::DoNotOptimize(csvText(record, nameOf));
  }
}

void tenfold(benchmark::internal::Benchmark* benchmark) {
  benchmark->RangeMultiplier(10)->Range(10, 10000);
}

BENCHMARK(load)->Apply(tenfold);
BENCHMARK(totals)->Apply(tenfold);
BENCHMARK(exportCSV)->Apply(tenfold);
BENCHMARK(encode)->Apply(tenfold);
BENCHMARK(loadSumAndExport)->Apply(tenfold);

}  // namespace
}  // namespace tallowin
