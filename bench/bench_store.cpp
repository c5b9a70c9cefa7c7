// How long the store takes to load, to change a record and to save, and the state to be exported for other programs,
// and how that grows with the number of records. A save has two parts: what the main thread does, and the whole of it,
// the disk included.

#include <benchmark/benchmark.h>
#include <filesystem>
#include <fstream>

#include "base/json_text.h"
#include "base/preferences.h"
#include "core/space_state.h"
#include "core/space_store.h"
#include "platform/linux/event_loop.h"
#include "platform/linux/lazy_images.h"
#include "platform/linux/unix_files.h"
#include "platform/linux/unix_system.h"
#include "platform/none/neutral.h"

namespace tallowin {
namespace {

/// Keeps the last piece of delayed work until it is told to run it. Nobody waits for anything else.
class HeldQueue : public MainQueue {
 public:
  void async(std::function<void()> /*work*/) override {}
  WorkItem after(Duration /*delay*/, std::function<void()> work) override {
    held_ = std::move(work);
    return {};
  }
  WorkItem every(Duration /*interval*/, Duration /*tolerance*/, std::function<void()> /*work*/) override { return {}; }
  void run() const { held_(); }

 private:
  std::function<void()> held_;
};

std::string id(std::int64_t number) {
  return "00000000-0000-4000-8000-" + std::to_string(100000000000 + number);
}

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
      metas.emplace(id(i), meta);
    }
    std::ofstream(file()) << prettyJSON(toJson(metas));
  }
  ~StoreOnDisk() { std::filesystem::remove_all(folder); }
  StoreOnDisk(const StoreOnDisk&) = delete;
  StoreOnDisk& operator=(const StoreOnDisk&) = delete;

  [[nodiscard]] std::filesystem::path file() const { return folder / "spaces.json"; }

  [[nodiscard]] std::unique_ptr<SpaceStore> load() {
    return std::make_unique<SpaceStore>(SpaceStore::Services{files, images, workspace, log, settings, paths}, storage,
                                        file());
  }

  std::filesystem::path folder;
  HeldQueue queue;
  EventLoop descriptors;
  UnixFiles files{descriptors};
  ThreadWorkQueues queues;
  SystemClock clock;
  SystemLog log{false};
  LazyImages images{log, false};
  NeutralWorkspace workspace;
  Folders folders{folder, folder, folder, folder, folder, {}};
  Storage storage{{files, queue, &queues, clock, log}};
  Preferences preferences{storage, files, queue, folder / "preferences.json",
                          [](std::string_view) { return std::nullopt; }};
  Settings settings{preferences};
  AppPaths paths{files, folders};
};

void load(benchmark::State& state) {
  StoreOnDisk disk(state.range(0));
  for (auto _ : state) {
    benchmark::DoNotOptimize(disk.load());
  }
}

void edit(benchmark::State& state) {
  StoreOnDisk disk(state.range(0));
  const auto store = disk.load();
  std::int64_t edits = 0;
  for (auto _ : state) {
    store->setName("Another name " + std::to_string(++edits), id(0));
  }
}

void saveOnMainThread(benchmark::State& state) {
  StoreOnDisk disk(state.range(0));
  const auto store = disk.load();
  for (auto _ : state) {
    store->setName("Another name", id(0));
    disk.queue.run();
    state.PauseTiming();
    benchmark::DoNotOptimize(disk.storage.saveNow());
    state.ResumeTiming();
  }
}

void saveInAll(benchmark::State& state) {
  StoreOnDisk disk(state.range(0));
  const auto store = disk.load();
  for (auto _ : state) {
    store->setName("Another name", id(0));
    benchmark::DoNotOptimize(disk.storage.saveNow());
  }
}

SpaceSnapshot snapshotOf(std::int64_t spaces) {
  DisplaySpaces display;
  display.id = "Main";
  display.activeSpaceID = id(0);
  display.isMenuBarDisplay = true;
  for (std::int64_t i = 0; i < spaces; ++i) {
    display.spaces.push_back({id(i), static_cast<ManagedSpaceID>(i + 1), "Main", i + 1, i, false, {}, i == 0});
  }
  return {{display}, {}};
}

void exportState(benchmark::State& state) {
  StoreOnDisk disk(state.range(0));
  const auto store = disk.load();
  const auto snapshot = snapshotOf(state.range(0));
  Files& files = disk.files;
  const AppNames apps = [](const Space&) { return std::vector<std::string>{"Editor", "Mail"}; };
  for (auto _ : state) {
    const auto text = prettyJSON(stateRecord(snapshot, *store, apps, disk.clock.now()));
    if (!files.writeAtomically(disk.folder / "state.json", text)) {
      state.SkipWithError("the state cannot be written");
    }
  }
}

void tenfold(benchmark::internal::Benchmark* benchmark) {
  benchmark->RangeMultiplier(10)->Range(10, 10000);
}

BENCHMARK(load)->Apply(tenfold);
BENCHMARK(edit)->Apply(tenfold);
BENCHMARK(saveOnMainThread)->Apply(tenfold);
BENCHMARK(saveInAll)->Apply(tenfold);
BENCHMARK(exportState)->Apply(tenfold);

}  // namespace
}  // namespace tallowin
