#include "triggers/asked_triggers.h"

#include <gtest/gtest.h>

#include "base/broadcaster.h"
#include "tests/simulated_program.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;

struct TestPanel : PanelActivations {
  Subscription observe(std::function<void()> observer) override { return observers.subscribe(std::move(observer)); }
  Broadcaster<> observers;
};

TEST(DockGuard, TakesBackWhomAPanelHasTakenAway) {
  struct Row {
    const char* name;
    bool isOn;
    bool isActivated;
    Duration until;  ///< the Space changes
    bool isOurs;
    std::string backTo;
  };
  const std::vector<Row> rows = {
      {"a panel does it", true, true, 300ms, false, "1"},
      {"it is not asked for", false, true, 300ms, false, ""},
      {"nobody activates anything", true, false, 300ms, false, ""},
      {"it comes much later", true, true, AskedTriggers::pullTime, false, ""},
      {"this program does it", true, true, 300ms, true, ""},
  };
  for (const auto& row : rows) {
    SimulatedProgram program("{}");
    TestPanel panel;
    AskedTriggers triggers({program.platform.preferences, program.time, program.platform.log, &panel});
    std::string backTo;
    triggers.setBounceBack([&backTo](const std::string& space) { backTo = space; });
    program.settings.set(setting::dockClickProtection, row.isOn);
    triggers.refreshDockGuard("1");
    if (row.isActivated) {
      panel.observers.tell();
    }
    program.time.runFor(row.until);
    EXPECT_EQ(triggers.spaceChanged("2", row.isOurs), !row.backTo.empty()) << row.name;
    EXPECT_EQ(backTo, row.backTo) << row.name;
    EXPECT_FALSE(triggers.spaceChanged(row.backTo.empty() ? "3" : "1", true)) << row.name << ", and the way back";
  }
}

}  // namespace
}  // namespace tallowin
