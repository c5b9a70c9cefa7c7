// Files of records on a simulated disk that fails, in virtual time.

#include "base/record_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/simulated/simulated_files.h"
#include "platform/simulated/virtual_time.h"
#include "tests/lines_log.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

constexpr auto path = "/home/u/records.json";

class RecordFileTest : public testing::Test {
 protected:
  RecordFileTest() { files.placeFolder("/home/u"); }

  /// Changes the content to this number.
  static void change(RecordFile& file, int number) {
    file.changed([number] { return [number] { return std::to_string(number); }; });
  }

  [[nodiscard]] std::string stored() { return files.read(path).value_or("none"); }

  /// The attempts to write since the last call: seconds since the start, and whether each succeeded.
  [[nodiscard]] std::vector<std::pair<double, bool>> takeWrites() { return std::exchange(writes, {}); }

  VirtualTime time;
  std::vector<std::pair<double, bool>> writes;
  Journal journal{time, [this](std::string_view line) {
                    const auto record = PropertyList::parse(line);
                    if (record["op"] == "writeAtomically") {
                      writes.emplace_back(record["t"], !record.contains("error"));
                    }
                  }};
  SimulatedFiles files{time, time, journal};
  LinesLog log;
  Storage storage{{files, time, &time, time, log}};
};

TEST_F(RecordFileTest, ARunOfChangesIsWrittenBehindItsLastOneAndWithinTheLimit) {
  RecordFile owed(storage, path, "Test", {.delay = 300ms});
  for (int i = 0; i < 40; ++i) {
    change(owed, i);
    time.advance(200ms);
  }
  time.advance(10s);
  EXPECT_THAT(takeWrites(), ElementsAre(std::pair(4.5, true), std::pair(8.1, true)));
  EXPECT_EQ(stored(), "39");

  RecordFile patient(storage, "/home/u/times.json", "Test", {.delay = 300ms, .limit = std::nullopt, .isOwed = false});
  for (int i = 0; i < 40; ++i) {
    change(patient, i);
    EXPECT_TRUE(storage.saveNow());
    time.advance(200ms);
  }
  EXPECT_THAT(takeWrites(), SizeIs(0)) << "nobody waits for it";
  time.advance(1s);
  EXPECT_THAT(takeWrites(), SizeIs(1));
}

TEST_F(RecordFileTest, WhatCannotBeWrittenIsSaidOnceAndTriedUntilItCan) {
  RecordFile file(storage, path, "Test", {.delay = 300ms});
  files.failAt(WriteStage::flush);
  change(file, 1);
  time.advance(100s);
  std::vector<double> attempts;
  for (const auto& [at, written] : takeWrites()) {
    attempts.push_back(at);
  }
  EXPECT_THAT(attempts, ElementsAre(0.3, 1.3, 3.3, 7.3, 15.3, 31.3, 61.3, 91.3));
  EXPECT_THAT(log.lines, ElementsAre(HasSubstr("cannot write /home/u/records.json: Input/output error")));
  EXPECT_FALSE(storage.isSound());
  EXPECT_EQ(storage.saveNow().error().description, "Input/output error");
  static_cast<void>(takeWrites());
  files.failAt(std::nullopt);
  change(file, 2);
  time.advance(300ms);
  EXPECT_THAT(takeWrites(), SizeIs(1)) << "with the next change";
  EXPECT_EQ(stored(), "2");
  EXPECT_TRUE(storage.isSound());
  EXPECT_THAT(log.lines, SizeIs(2));
  time.advance(100s);
  EXPECT_THAT(takeWrites(), SizeIs(0));
}

TEST_F(RecordFileTest, WhatWasNotUnderstoodIsNeverOverwritten) {
  files.overwrite(path, "theirs");
  RecordFile file(storage, path, "Test");
  EXPECT_TRUE(file.readList([](const PropertyList&) { return true; }).empty());
  files.setUnwritable("/home/u", true);
  file.replace("[1]");
  EXPECT_EQ(file.readList([](const PropertyList&) { return true; }), PropertyList::parse("[1]"))
      << "what is unsaved is what counts";
  EXPECT_EQ(stored(), "theirs");
  files.setUnwritable("/home/u", false);
  time.advance(1s);
  EXPECT_EQ(stored(), "[1]");
  EXPECT_EQ(files.read(std::string(path) + ".unreadable-20260302T090001Z").value_or(""), "theirs");
}

}  // namespace
}  // namespace tallowin
