// Files of records on a real disk that takes its time: what happens while another thread writes one.

#include <atomic>
#include <cstdlib>
#include <gtest/gtest.h>
#include <optional>
#include <semaphore>

#include "base/record_file.h"
#include "platform/linux/unix_files.h"
#include "platform/linux/unix_system.h"
#include "tests/lines_log.h"
#include "tests/platform/test_loop.h"

namespace tallowin {
namespace {

/// Every write waits until it may.
class SlowFiles : public UnixFiles {
 public:
  using UnixFiles::UnixFiles;

  std::expected<void, FileError> writeAtomically(const std::filesystem::path& path, std::string_view bytes,
                                                 unsigned mode, OldMode old) override {
    begun.release();
    mayWrite.acquire();
    return isBroken ? std::unexpected(FileError{false, "broken"}) : UnixFiles::writeAtomically(path, bytes, mode, old);
  }

  std::counting_semaphore<> begun{0};
  std::counting_semaphore<> mayWrite{0};
  std::atomic<bool> isBroken = false;
};

class BackgroundWritesTest : public testing::Test {
 protected:
  BackgroundWritesTest() {
    std::string pattern = (std::filesystem::temp_directory_path() / "tallowin-test-XXXXXX").string();
    folder = ::mkdtemp(pattern.data());
    file.emplace(storage, folder / "records.json", "Test");
    change(1);
    EXPECT_TRUE(queue.runUntil([this] { return files.begun.try_acquire(); }));
  }
  ~BackgroundWritesTest() override { std::filesystem::remove_all(folder); }

  void change(int number) {
    file->changed([number] { return [number] { return std::to_string(number); }; });
  }

  [[nodiscard]] std::string stored() { return files.read(folder / "records.json").value_or("none"); }

  TestLoop queue;
  SlowFiles files{queue};
  ThreadWorkQueues queues;
  SystemClock clock;
  LinesLog log;
  std::filesystem::path folder;
  Storage storage{{files, queue, &queues, clock, log}};
  std::optional<RecordFile> file;
};

TEST_F(BackgroundWritesTest, AChangeThatComesMeanwhileIsWrittenAfterIt) {
  change(2);
  queue.runReady();
  EXPECT_EQ(stored(), "none") << "and the main thread did not wait";
  EXPECT_FALSE(files.begun.try_acquire()) << "one after the other";
  files.mayWrite.release(2);
  EXPECT_TRUE(queue.runUntil([this] { return stored() == "2"; }));
  file.reset();
  EXPECT_TRUE(files.begun.try_acquire());
  EXPECT_FALSE(files.begun.try_acquire()) << "nothing is written twice";
}

TEST_F(BackgroundWritesTest, AFailureIsSaidAndTheLatestContentIsWrittenAfterAll) {
  files.isBroken = true;
  change(2);
  files.mayWrite.release();
  EXPECT_TRUE(queue.runUntil([this] { return !storage.isSound(); }));
  EXPECT_EQ(log.lines.size(), 1U);
  files.isBroken = false;
  files.mayWrite.release();
  EXPECT_TRUE(storage.saveNow());
  EXPECT_EQ(stored(), "2");
  EXPECT_TRUE(storage.isSound());
}

TEST_F(BackgroundWritesTest, WhoeverEndsTheProgramWaitsForIt) {
  files.mayWrite.release();
  EXPECT_TRUE(storage.saveNow());
  EXPECT_EQ(stored(), "1");
  EXPECT_FALSE(files.begun.try_acquire()) << "nothing is written twice";
  change(2);
  EXPECT_TRUE(queue.runUntil([this] { return files.begun.try_acquire(); }));
  change(3);
  files.mayWrite.release(2);
  EXPECT_TRUE(storage.saveNow());
  file.reset();
  EXPECT_EQ(stored(), "3");
}

}  // namespace
}  // namespace tallowin
