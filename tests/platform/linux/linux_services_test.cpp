// The real machine's services, where they can go wrong: the event loop, files, child processes.

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "platform/linux/event_loop.h"
#include "platform/linux/unix_files.h"
#include "platform/linux/unix_processes.h"
#include "platform/linux/unix_system.h"
#include "tests/platform/test_loop.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;

class LinuxServicesTest : public testing::Test {
 protected:
  LinuxServicesTest() {
    std::string pattern = (std::filesystem::temp_directory_path() / "tallowin-test-XXXXXX").string();
    folder = ::mkdtemp(pattern.data());
  }
  ~LinuxServicesTest() override { std::filesystem::remove_all(folder); }

  [[nodiscard]] static unsigned mode(const std::filesystem::path& path) {
    struct stat status{};
    ::stat(path.c_str(), &status);
    return status.st_mode & 0777;
  }

  /// The process ids of this process's children, ended ones among them.
  [[nodiscard]] static std::vector<pid_t> children() {
    std::ifstream list("/proc/self/task/" + std::to_string(::getpid()) + "/children");
    return {std::istream_iterator<pid_t>(list), std::istream_iterator<pid_t>()};
  }

  TestLoop queue;
  UnixFiles files{queue};
  std::filesystem::path folder;
};

TEST_F(LinuxServicesTest, WorkRunsInOrderAndALostItemNever) {
  std::vector<std::string> ran;
  WorkItem second;
  WorkItem last;
  const auto end = [&] {
    ran.emplace_back("last");
    queue.stop(3);
  };
  const auto first = queue.after(1ms, [&] {
    ran.emplace_back("first");
    second.cancel();
    queue.async([&] {
      ran.emplace_back("async");
      last = queue.after(5ms, end);
    });
  });
  second = queue.after(1ms, [&] { ran.emplace_back("second"); });
  {
    const auto lost = queue.after(0ms, [&] { ran.emplace_back("lost"); });
  }
  EXPECT_EQ(queue.run(), 3);
  EXPECT_EQ(ran, (std::vector<std::string>{"first", "async", "last"}));
  EXPECT_EQ(queue.run(), 3) << "a stopped loop stays stopped";
}

TEST_F(LinuxServicesTest, TimersRunByDueTimeAndTogetherWhereTheyMayWait) {
  std::string ran;
  std::vector<WorkItem> items;
  const auto note = [&](char name) { return [&ran, name] { ran += name; }; };
  items.push_back(queue.after(3ms, note('d')));
  items.push_back(queue.after(-1h, note('b')));
  items.push_back(queue.after(0ms, note('a')));
  items.push_back(queue.after(2ms, note('c')));
  items.push_back(queue.after(Duration::max(), note('x')));
  EXPECT_TRUE(queue.runUntil([&] { return ran.contains('d'); }));
  EXPECT_EQ(ran, "bacd");
  ran.clear();
  const auto tick = queue.every(1ms, 1h, note('e'));
  queue.runFor(20ms);
  EXPECT_EQ(ran, "e") << "with what woke the loop; those that were missed are left out";
}

TEST_F(LinuxServicesTest, AWatchIsToldOfItsOwnFileOnly) {
  int first[2];
  int second[2];
  ASSERT_EQ(::pipe(first) + ::pipe(second), 0);
  std::string told;
  Subscription watch;
  Subscription other;
  Subscription another;
  const auto reuse = [&](const char* name) {
    told += name;
    watch.cancel();
    other.cancel();
    ::dup2(first[1], second[0]);  // never readable
    another = queue.watchReadable(second[0], [&] { told += "another"; });
  };
  watch = queue.watchReadable(first[0], [&] { reuse("first"); });
  other = queue.watchReadable(second[0], [&] { reuse("second"); });
  ::write(first[1], "x", 1);
  ::write(second[1], "x", 1);
  queue.runReady();
  EXPECT_EQ(told, "first") << "both were readable at the same time";
  int writable = 0;
  watch = queue.watchWritable(first[1], [&] {
    ++writable;
    watch.cancel();
  });
  another = queue.watchReadable(first[0], [&] {
    char byte = 0;
    ::read(first[0], &byte, 1);
  });
  queue.runReady();
  EXPECT_EQ(writable, 1);
  another.cancel();
  EXPECT_EQ(queue.watchCount(), 0U);
  for (const int end : {first[0], first[1], second[0], second[1]}) {
    ::close(end);
  }
}

TEST_F(LinuxServicesTest, OtherThreadsReachTheMainThread) {
  const auto main = std::this_thread::get_id();
  std::atomic<int> workedElsewhere = 0;
  int arrived = 0;
  ThreadWorkQueues queues;
  const auto work = queues.make("tallowin.test");
  for (int i = 0; i < 100; ++i) {
    work->after(Duration::zero(), [&] {
      workedElsewhere += std::this_thread::get_id() != main ? 1 : 0;
      queue.async([&] { arrived += std::this_thread::get_id() == main ? 1 : 0; });
    });
  }
  EXPECT_TRUE(queue.runUntil([&] { return arrived == 100; }));
  EXPECT_EQ(workedElsewhere, 100);
}

TEST_F(LinuxServicesTest, AFileThatIsReplacedKeepsItsModeAndItsLinks) {
  const auto path = folder / "record.json";
  ASSERT_TRUE(files.writeAtomically(path, "one", 0600, OldMode::kept));
  EXPECT_EQ(mode(path), 0600U);
  ::chmod(path.c_str(), 0640);
  std::filesystem::create_directory(folder / "linked");
  std::filesystem::create_symlink("../record.json", folder / "linked/link");
  std::filesystem::create_symlink("linked/link", folder / "link");
  std::filesystem::create_symlink("linked/made", folder / "dangling");
  ASSERT_TRUE(files.writeAtomically(folder / "link", "two", 0600, OldMode::kept));
  EXPECT_EQ(mode(path), 0640U);
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "link"));
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "linked/link"));
  EXPECT_EQ(files.read(path).value_or(""), "two");
  ASSERT_TRUE(files.writeAtomically(folder / "dangling", "three", 0600, OldMode::kept));
  EXPECT_EQ(files.read(folder / "linked/made").value_or(""), "three");
  ASSERT_TRUE(files.writeAtomically(path, "four", 0600, OldMode::replaced));
  EXPECT_EQ(mode(path), 0600U);
  ::chmod(path.c_str(), 0644);
  EXPECT_TRUE(files.restrictMode(path, 0600));
  EXPECT_EQ(mode(path), 0600U);
  EXPECT_TRUE(files.createDirectory(folder / "a/b/c", 0700));
  EXPECT_EQ(mode(folder / "a/b"), 0700U);
}

TEST_F(LinuxServicesTest, ALockKeepsTheNextOneWaiting) {
  auto first = files.lock(folder / "lock");
  std::atomic<bool> released = false;
  bool waited = false;
  std::thread other([&] {
    const auto second = files.lock(folder / "lock");
    waited = released;
  });
  queue.runFor(5ms);
  released = true;
  first.cancel();
  other.join();
  EXPECT_TRUE(waited);
  EXPECT_FALSE(files.lock(folder / "no such folder" / "lock")) << "everybody goes on without it";
}

TEST_F(LinuxServicesTest, AWatchedNameIsFollowedWhateverBecomesOfItsFolders) {
  namespace fs = std::filesystem;
  const auto path = folder / "a/b/watched";
  std::vector<std::string> seen;
  const auto watch = files.watch(path, [&](FileEvents) { seen.push_back(files.read(path).value_or("none")); });
  ASSERT_TRUE(watch);
  const auto sees = [&](const std::string& text) {
    return queue.runUntil([&] { return !seen.empty() && seen.back() == text; });
  };
  fs::create_directories(path.parent_path());
  std::ofstream(path) << "made";
  EXPECT_TRUE(sees("made")) << "in folders that were not there";
  EXPECT_EQ(std::ranges::count(seen, ""), 0) << "a file that is just begun is not told";
  std::ofstream(path, std::ios::app) << " longer";
  EXPECT_TRUE(sees("made longer"));
  ASSERT_TRUE(files.writeAtomically(path, "replaced", 0600, OldMode::kept));
  EXPECT_TRUE(sees("replaced"));
  fs::rename(folder / "a", folder / "old");
  EXPECT_TRUE(sees("none"));
  fs::create_directories(folder / "new/b");
  std::ofstream(folder / "new/b/watched") << "moved here";
  fs::rename(folder / "new", folder / "a");
  EXPECT_TRUE(sees("moved here"));
  std::ofstream(folder / "target") << "elsewhere";
  fs::remove(path);
  fs::create_symlink(folder / "target", path);
  EXPECT_TRUE(sees("elsewhere"));
  std::ofstream(folder / "target") << "rewritten";
  EXPECT_TRUE(sees("rewritten")) << "through a link";
  fs::remove_all(folder / "a");
  EXPECT_TRUE(sees("none"));
}

TEST_F(LinuxServicesTest, ProgramsStartWithNothingOfThisProcess) {
  UnixProcesses processes(queue);
  const auto signals = onTerminationSignal(queue, [](int) {});  // blocks them here
  const auto ignored = ::signal(SIGPIPE, SIG_IGN);
  const int open = ::dup(0);           // without FD_CLOEXEC
  const auto script = R"(
    read session rest < /proc/self/stat; set -- $rest; [ $5 = $$ ] && echo leads a session
    ls /proc/self/fd | wc -l
    grep SigBlk /proc/self/status
    ignored=$(sed -n 's/SigIgn:\t/0x/p' /proc/self/status)
    echo $((ignored & 0x7FFFFFFF)))";  // without the C library's own signals
  EXPECT_EQ(processes.run({"/bin/sh", {"-c", script}, {}}).value_or(""),
            "leads a session\n4\nSigBlk:\t0000000000000000\n0\n")
      << "four descriptors: the usual ones, and the folder that is read";
  ::close(open);
  ::signal(SIGPIPE, ignored);
}

TEST_F(LinuxServicesTest, NothingIsLeftOfProgramsThatEnded) {
  const auto openDescriptors = [] { return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}); };
  {
    UnixProcesses processes(queue);
    ASSERT_TRUE(processes.launch({"/bin/sh", {"-c", "exec sleep 1000 # never ends by itself"}, {}}));
    const auto before = openDescriptors();
    for (int i = 0; i < 300; ++i) {
      ASSERT_TRUE(processes.launch({"/bin/true", {}, {}}));
    }
    EXPECT_EQ(processes.run({"/bin/echo", {"meanwhile"}, {}}).value_or(""), "meanwhile\n");
    EXPECT_TRUE(queue.runUntil([] { return children().size() == 1; }));
    EXPECT_EQ(openDescriptors(), before);
  }
  const auto left = children();
  ASSERT_EQ(left.size(), 1U) << "it lives on";
  ::kill(left.front(), SIGKILL);
  EXPECT_EQ(::waitpid(left.front(), nullptr, 0), left.front());
}

}  // namespace
}  // namespace tallowin
