// How long the store takes to load, to change a record and to save, and how that grows with the number of records. A
// save has two parts: what the main thread does, and the whole of it, the disk included.

#include <benchmark/benchmark.h>
#include <filesystem>
#include <fstream>

#include "base/file_preferences.h"
#include "base/json_text.h"
#include "core/space_store.h"
#include "platform/none/neutral.h"
#include "platform/qt/lazy_images.h"
#include "platform/qt/qt_files.h"
#include "platform/qt/system_clock.h"
#include "platform/qt/system_log.h"
#include "platform/qt/thread_work_queues.h"

namespace tallowin {
namespace {

/// Keeps the last piece of delayed work until it is told to run it.
class HeldQueue : public MainQueue {
 public:
  void async(std::function<void()> work) override { work(); }
  WorkItem after(Duration /*delay*/, std::function<void()> work) override {
    held_ = std::move(work);
    return {};
  }
  WorkItem every(Duration /*interval*/, Duration /*tolerance*/, std::function<void()> /*work*/) override { return {}; }
  void run() const { held_(); }

 private:
  std::function<void()> held_;
};

class NoDescriptors : public Descriptors {
 public:
  Subscription watchReadable(int /*descriptor*/, std::function<void()> /*work*/) override { return {}; }
  Subscription watchWritable(int /*descriptor*/, std::function<void()> /*work*/) override { return {}; }
};

/// A store on the disk with so many records of ordinary size.
class StoreOnDisk {
 public:
  explicit StoreOnDisk(std::int64_t records) {
    std::string pattern = (std::filesystem::temp_directory_path() / "tallowin-bench-XXXXXX").string();
    folder = ::mkdtemp(pattern.data());
    SpaceMetas metas;
    for (std::int64_t i = 0; i < records; ++i) {
      SpaceMeta meta;
      meta.name = "Space number " + std::to_string(i);
      meta.colorHex = "#1A2B3C";
      meta.note = "What this Space is for, in one sentence of the usual length.";
      metas.emplace("00000000-0000-4000-8000-" + std::to_string(100000000000 + i), meta);
    }
    std::ofstream(file()) << prettyJSON(toJson(metas));
  }
  ~StoreOnDisk() { std::filesystem::remove_all(folder); }
  StoreOnDisk(const StoreOnDisk&) = delete;
  StoreOnDisk& operator=(const StoreOnDisk&) = delete;

  [[nodiscard]] std::filesystem::path file() const { return folder / "spaces.json"; }

  [[nodiscard]] std::unique_ptr<SpaceStore> load() {
    return std::make_unique<SpaceStore>(
        SpaceStore::Services{files, images, workspace, queue, queues, clock, log, settings, paths}, file());
  }

  std::filesystem::path folder;
  HeldQueue queue;
  NoDescriptors descriptors;
  QtFiles files{descriptors};
  ThreadWorkQueues queues;
  SystemClock clock;
  SystemLog log{false};
  LazyImages images{log};
  NeutralWorkspace workspace;
  Folders folders{folder, folder, folder, folder, folder, {}};
  FilePreferences preferences{
      {files, queue, clock, log}, folder / "preferences.json", [](std::string_view) { return std::nullopt; }};
  Settings settings{preferences};
  AppPaths paths{files, folders};
};

void load(benchmark::State& state) {
  StoreOnDisk disk(state.range(0));
  for (auto _ : state) {
    benchmark::DoNotOptimize(disk.load());
  }
  state.SetComplexityN(state.range(0));
}

void edit(benchmark::State& state) {
  StoreOnDisk disk(state.range(0));
  const auto store = disk.load();
  std::int64_t edits = 0;
  for (auto _ : state) {
    store->setName("Another name " + std::to_string(++edits), "00000000-0000-4000-8000-100000000000");
  }
  state.SetComplexityN(state.range(0));
}

void saveOnMainThread(benchmark::State& state) {
  StoreOnDisk disk(state.range(0));
  const auto store = disk.load();
  for (auto _ : state) {
    store->setName("Another name", "00000000-0000-4000-8000-100000000000");
    disk.queue.run();
    state.PauseTiming();
    store->finishSaving();
    state.ResumeTiming();
  }
  state.SetComplexityN(state.range(0));
}

void saveInAll(benchmark::State& state) {
  StoreOnDisk disk(state.range(0));
  const auto store = disk.load();
  for (auto _ : state) {
    store->setName("Another name", "00000000-0000-4000-8000-100000000000");
    disk.queue.run();
    store->finishSaving();
  }
  state.SetComplexityN(state.range(0));
}

BENCHMARK(load)->RangeMultiplier(10)->Range(100, 10000)->Unit(benchmark::kMillisecond)->Complexity(benchmark::oN);
BENCHMARK(edit)->RangeMultiplier(10)->Range(100, 10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(saveOnMainThread)
    ->RangeMultiplier(10)
    ->Range(100, 10000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);
BENCHMARK(saveInAll)->RangeMultiplier(10)->Range(100, 10000)->Unit(benchmark::kMillisecond)->Complexity(benchmark::oN);

}  // namespace
}  // namespace tallowin
