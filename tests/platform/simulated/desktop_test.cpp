#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/simulated/simulated_files.h"
#include "platform/simulated/virtual_time.h"
#include "tests/simulated_program.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
namespace p = private_functions;

TEST(SimulatedDesktopTest, functionsServeTheDesktopThatIsStillThere) {
  auto first = std::make_unique<SimulatedProgram>(R"({"connection": 11})");
  auto second = std::make_unique<SimulatedProgram>(R"({"connection": 22})");
  const auto connection =
      reinterpret_cast<p::MainConnectionID>(first->desktop.loader().symbol(nullptr, "SLSMainConnectionID"));
  EXPECT_EQ(connection(), 22U);
  first.reset();
  EXPECT_EQ(connection(), 22U);
  second.reset();
  EXPECT_EQ(connection(), 0U);
}

class SimulatedFilesTest : public testing::Test {
 protected:
  SimulatedFilesTest() { files.placeFolder("/home/user"); }

  /// Watches a file and writes down what happens to it.
  Subscription watching(const char* path, std::vector<std::string>& seen) {
    auto watch = files.watch(path, [&seen](FileEvents events) {
      seen.push_back(events.written ? "written" : events.deleted ? "deleted" : events.renamed ? "renamed" : "nothing");
    });
    EXPECT_TRUE(watch.has_value()) << path;
    return std::move(watch).value_or(Subscription());
  }

  VirtualTime time;
  std::vector<std::string> lines;
  Journal journal{time, [this](std::string_view line) { lines.emplace_back(line); }};
  SimulatedFiles files{time, time, journal};
};

TEST_F(SimulatedFilesTest, aWatchStaysWithTheFileThatWasOpened) {
  files.overwrite("/home/user/spaces", "1");
  std::vector<std::string> first;
  const auto onFirst = watching("/home/user/spaces", first);

  files.overwrite("/home/user/spaces", "2");
  EXPECT_THAT(first, ElementsAre()) << "nobody is told inside the call";
  time.advance(0ms);
  EXPECT_THAT(first, ElementsAre("written"));

  files.replace("/home/user/spaces", "3");
  time.advance(0ms);
  EXPECT_THAT(first, ElementsAre("written", "deleted"));

  std::vector<std::string> second;
  const auto onSecond = watching("/home/user/spaces", second);
  files.overwrite("/home/user/spaces", "4");
  ASSERT_TRUE(files.rename("/home/user/spaces", "/home/user/moved"));
  files.overwrite("/home/user/moved", "5");
  time.advance(0ms);
  EXPECT_EQ(first.size(), 2U);
  EXPECT_THAT(second, ElementsAre("written", "renamed", "written"));
  EXPECT_FALSE(files.watch("/home/user/spaces", [](FileEvents) {}));
}

TEST_F(SimulatedFilesTest, stampsTellEveryContentFromTheNext) {
  // All of the same size; the clock does not move, and then goes back.
  files.overwrite("/home/user/a", "1");
  const auto first = files.stamp("/home/user/a").value();
  files.overwrite("/home/user/a", "2");
  const auto second = files.stamp("/home/user/a").value();
  time.jumpWallClock(-1h);
  files.replace("/home/user/a", "3");
  const auto third = files.stamp("/home/user/a").value();
  EXPECT_TRUE(first.identity == second.identity && first.modified < second.modified);
  EXPECT_TRUE(second.identity != third.identity && second.modified < third.modified);
}

}  // namespace
}  // namespace tallowin
