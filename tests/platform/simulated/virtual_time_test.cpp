#include "platform/simulated/virtual_time.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

class VirtualTimeTest : public testing::Test {
 protected:
  std::function<void()> note(const std::string& what) {
    return [this, what] { seen.push_back(what); };
  }

  VirtualTime time;
  std::vector<std::string> seen;
};

TEST_F(VirtualTimeTest, workAskedForInsideABatchRunsAfterWhatIsDueAlready) {
  const auto a = time.after(1ms, [&] {
    seen.emplace_back("a");
    time.async(note("from a"));
  });
  const auto b = time.after(1ms, note("b"));
  time.advance(1ms);
  EXPECT_THAT(seen, ElementsAre("a", "b", "from a"));
}

TEST_F(VirtualTimeTest, workIsCancelledFromInsideTheRunningBatch) {
  WorkItem second;
  const auto first = time.after(1ms, [&] {
    second.cancel();
    seen.emplace_back("first");
  });
  second = time.after(1ms, note("second"));
  auto third = time.after(1ms, note("third"));
  third = time.after(1ms, note("in its place"));
  time.advance(5ms);
  EXPECT_THAT(seen, ElementsAre("first", "in its place"));
}

TEST_F(VirtualTimeTest, anItemMayBeDestroyedInsideItsOwnWork) {
  struct Owner {
    WorkItem item;
    std::string name = "a name that lives as long as its owner, on the heap";
  };
  auto owner = std::make_unique<Owner>();
  owner->item = time.after(1ms, [&, name = owner->name] {
    owner.reset();
    seen.push_back(name);
  });
  std::unique_ptr<WorkItem> timer;
  timer = std::make_unique<WorkItem>(time.every(1ms, 0ms, [&, held = std::string(100, 'x')] {
    timer.reset();
    seen.push_back(held.substr(0, 1));
  }));
  time.advance(10ms);
  EXPECT_THAT(seen, ElementsAre("a name that lives as long as its owner, on the heap", "x"));
}

TEST_F(VirtualTimeTest, cancelledWorkLetsGoOfWhatItHolds) {
  const auto held = std::make_shared<int>(1);
  auto item = time.after(1h, [held] {});
  EXPECT_EQ(held.use_count(), 2);
  item.cancel();
  EXPECT_EQ(held.use_count(), 1);
}

TEST_F(VirtualTimeTest, itemsMayOutliveTime) {
  auto shortLived = std::make_unique<VirtualTime>();
  const auto held = std::make_shared<int>(1);
  const auto item = shortLived->after(1s, [held] {});
  shortLived.reset();
  EXPECT_EQ(held.use_count(), 1);
}

TEST_F(VirtualTimeTest, runEndsAtStopAtTheEndOrWithNothingLeft) {
  const auto only = time.after(2s, note("only"));
  EXPECT_EQ(time.run(), 0);
  EXPECT_EQ(time.elapsed(), 2s);

  const auto timer = time.every(1s, 0s, note("tick"));
  time.endAt(4s);
  EXPECT_EQ(time.run(), 0);
  EXPECT_THAT(seen, ElementsAre("only", "tick", "tick"));
  EXPECT_EQ(time.stopped(), std::nullopt);

  time.endAt(100s);
  const auto stop = time.after(1500ms, [&] { time.stop(7); });
  EXPECT_EQ(time.run(), 7);
  EXPECT_EQ(time.elapsed(), 5500ms);
  EXPECT_EQ(time.stopped(), 7);
}

TEST_F(VirtualTimeTest, workQueuesShareTheOrderAndDropTheirWorkWhenTheyEnd) {
  auto queue = time.make("contents");
  const auto main = time.after(1ms, note("main"));
  queue->after(1ms, note("queue"));
  queue->after(0ms, note("queue at once"));
  queue->after(2ms, [&] {
    seen.emplace_back("the queue ends inside its own work");
    queue.reset();
  });
  queue->after(3ms, note("never"));
  time.advance(10ms);
  EXPECT_THAT(seen, ElementsAre("queue at once", "main", "queue", "the queue ends inside its own work"));
}

}  // namespace
}  // namespace tallowin
