// What every implementation of Files promises: the machine's, on a disk that is made to fail, and the simulated one.

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

#include "platform/linux/event_loop.h"
#include "platform/linux/unix_files.h"
#include "platform/simulated/simulated_files.h"
#include "platform/simulated/virtual_time.h"

namespace tallowin {
namespace {

using testing::ElementsAre;

/// A folder of its own on some disk, which can be made to fail and be mended.
class Disk {
 public:
  virtual ~Disk() = default;
  virtual Files& files() = 0;
  virtual std::filesystem::path folder() = 0;
  /// Why this disk is not to be had here; empty when it is.
  virtual std::string absence() { return ""; }
  virtual void fail() {}
  virtual void mend() {}
};

class SimulatedDisk : public Disk {
 public:
  explicit SimulatedDisk(std::optional<WriteStage> stage = std::nullopt) : stage_(stage) {
    files_.placeFolder(folder());
  }
  Files& files() override { return files_; }
  std::filesystem::path folder() override { return "/home/user/folder"; }
  void fail() override { files_.failAt(stage_); }
  void mend() override { files_.failAt(std::nullopt); }

 protected:
  VirtualTime time_;
  Journal journal_{time_, [](std::string_view) {}};
  SimulatedFiles files_{time_, time_, journal_};

 private:
  const std::optional<WriteStage> stage_;
};

class FullSimulatedDisk : public SimulatedDisk {
 public:
  void fail() override { files_.setRoom(4096); }
  void mend() override { files_.setRoom(std::nullopt); }
};

class RealDisk : public Disk {
 public:
  RealDisk() {
    std::string pattern = (std::filesystem::temp_directory_path() / "tallowin-test-XXXXXX").string();
    root_ = ::mkdtemp(pattern.data());
    std::filesystem::create_directory(folder());
  }
  ~RealDisk() override {
    std::error_code error;
    std::filesystem::remove_all(root_, error);
  }
  Files& files() override { return files_; }
  std::filesystem::path folder() override { return root_ / "folder"; }

 protected:
  std::filesystem::path root_;

 private:
  EventLoop loop_;
  UnixFiles files_{loop_};
};

/// A process may write files of 4 KiB only, setrlimit(2).
class LimitedProcess : public RealDisk {
 public:
  LimitedProcess() { ::getrlimit(RLIMIT_FSIZE, &before_); }
  ~LimitedProcess() override { mend(); }
  void fail() override {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{4096, before_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  void mend() override { ::setrlimit(RLIMIT_FSIZE, &before_); }

 private:
  rlimit before_{};
};

/// A disk of 64 KiB that only this process sees.
class SmallDisk : public RealDisk {
 public:
  SmallDisk() {
    if (::unshare(CLONE_NEWNS) != 0 || ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        ::mount("tmpfs", root_.c_str(), "tmpfs", 0, "size=64k") != 0) {
      absence_ = std::string("a file system cannot be mounted here: ") + std::strerror(errno);
    } else {
      std::filesystem::create_directory(folder());
    }
  }
  ~SmallDisk() override { ::umount2(root_.c_str(), MNT_DETACH); }
  std::string absence() override { return absence_; }

 private:
  std::string absence_;
};

class FullDisk : public SmallDisk {
 public:
  void fail() override {
    std::ofstream filler(root_ / "filler");
    filler << std::string(64 << 10, 'x');
  }
  void mend() override { std::filesystem::remove(root_ / "filler"); }
};

class ReadOnlyDisk : public SmallDisk {
 public:
  void fail() override { ::mount(nullptr, root_.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr); }
  void mend() override { ::mount(nullptr, root_.c_str(), nullptr, MS_REMOUNT, nullptr); }
};

/// Something is mounted on the very file, which cannot be replaced then.
class MountedFile : public SmallDisk {
 public:
  void fail() override {
    const auto file = folder() / "record.json";
    ::mount(file.c_str(), file.c_str(), nullptr, MS_BIND, nullptr);
  }
  void mend() override { ::umount2((folder() / "record.json").c_str(), MNT_DETACH); }
};

struct DiskCase {
  const char* name;
  std::function<std::unique_ptr<Disk>()> make;
  friend void PrintTo(const DiskCase& disk, std::ostream* out) { *out << disk.name; }
};

template <typename Made, WriteStage... stage>
std::unique_ptr<Disk> made() {
  return std::make_unique<Made>(stage...);
}

class FilesTest : public testing::TestWithParam<DiskCase> {
 protected:
  void SetUp() override {
    if (const auto why = disk->absence(); !why.empty()) {
      GTEST_SKIP() << why;
    }
  }

  const std::unique_ptr<Disk> disk = GetParam().make();
  Files& files = disk->files();
  const std::filesystem::path folder = disk->folder();
  const std::filesystem::path file = folder / "record.json";
};

using AnyDisk = FilesTest;

TEST_P(AnyDisk, FilesAreReplacedWholeAndFailuresSayWhy) {
  EXPECT_TRUE(files.read(file).error().notFound);
  EXPECT_TRUE(files.writeAtomically(folder / "no such folder" / "x", "x").error().notFound);
  EXPECT_FALSE(files.writeAtomically(folder, "x"));
  EXPECT_TRUE(files.remove(file).error().notFound);
  EXPECT_TRUE(files.rename(file, folder / "x").error().notFound);
  EXPECT_FALSE(files.restrictMode(file, 0600));
  ASSERT_TRUE(files.writeAtomically(file, "one"));
  const auto before = files.stamp(file);
  ASSERT_TRUE(files.writeAtomically(file, "two"));
  EXPECT_EQ(files.read(file).value_or(""), "two");
  EXPECT_NE(files.stamp(file), before);
  EXPECT_TRUE(files.restrictMode(file, 0600));
  EXPECT_THAT(files.list(folder), ElementsAre("record.json"));
  EXPECT_FALSE(files.createDirectory(file));
  EXPECT_FALSE(files.createDirectory(file / "below"));
  EXPECT_FALSE(files.writeAtomically(file / "below", "x"));
  EXPECT_TRUE(files.createDirectory(folder / "a/b/c"));
  EXPECT_TRUE(files.createDirectory(folder / "a/b/c"));
  EXPECT_FALSE(files.read(folder));
}

INSTANTIATE_TEST_SUITE_P(Files, AnyDisk,
                         testing::Values(DiskCase{"real", made<RealDisk>}, DiskCase{"simulated", made<SimulatedDisk>}),
                         [](const auto& disk) { return disk.param.name; });

using FailingDisk = FilesTest;

TEST_P(FailingDisk, AFailedWriteLeavesTheOldFileWholeAndNoOther) {
  const std::string longText(12 << 10, 'n');
  ASSERT_TRUE(files.writeAtomically(file, "old"));
  disk->fail();
  for (const auto& path : {file, file, folder / "new.json"}) {
    const auto written = files.writeAtomically(path, longText);
    if (path == file) {
      ASSERT_FALSE(written);
      EXPECT_FALSE(written.error().notFound);
      EXPECT_FALSE(written.error().description.empty());
    }
    EXPECT_EQ(files.read(file).value_or("nothing"), "old");
    if (!written) {
      EXPECT_THAT(files.list(folder), ElementsAre("record.json"));
    }
  }
  disk->mend();
  ASSERT_TRUE(files.writeAtomically(file, "new"));
  EXPECT_EQ(files.read(file).value_or("nothing"), "new");
}

INSTANTIATE_TEST_SUITE_P(Files, FailingDisk,
                         testing::Values(DiskCase{"full", made<FullDisk>}, DiskCase{"limited", made<LimitedProcess>},
                                         DiskCase{"readOnly", made<ReadOnlyDisk>},
                                         DiskCase{"mounted", made<MountedFile>},
                                         DiskCase{"simulatedFull", made<FullSimulatedDisk>},
                                         DiskCase{"simulatedOpen", made<SimulatedDisk, WriteStage::open>},
                                         DiskCase{"simulatedWrite", made<SimulatedDisk, WriteStage::write>},
                                         DiskCase{"simulatedFlush", made<SimulatedDisk, WriteStage::flush>},
                                         DiskCase{"simulatedRename", made<SimulatedDisk, WriteStage::rename>}),
                         [](const auto& disk) { return disk.param.name; });

}  // namespace
}  // namespace tallowin
