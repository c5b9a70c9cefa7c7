// Copies of what was configured, and putting them back.

#include "automation/backups.h"

#include <gmock/gmock.h>

#include "tests/storing_program.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

struct BackupsProgram : StoringProgram {
  BackupsProgram()
      : StoringProgram(R"({"start": "2026-03-02T09:00:00Z", "timeZone": "+05:30", "desktopsByPlace": true})") {}

  SettingsTransfer transfer{services};
  Backups backups{services, transfer};
};

TEST(Backups, PutBackWhatWasThereAndKeepWhatIs) {
  BackupsProgram program;
  auto& store = program.store;
  store.setName("A", "managed-1");
  store.setName("B", "managed-2");
  program.preferences.setObject("activeProfile", "Work");
  program.preferences.setObject("wrapAround", false);
  program.backups.keep("before removing desktop 2");
  program.desktop.parts().spaces.removeDesktop(2);
  store.replaceAll({});
  program.preferences.setObject("activeProfile", "");
  program.preferences.setObject("wrapAround", true);

  EXPECT_EQ(program.backups.restore(0), std::nullopt);
  EXPECT_EQ(program.backups.restore(2), std::nullopt);
  EXPECT_EQ(program.backups.restore(1), Backups::Restored::all);
  EXPECT_EQ(store.meta("managed-2").name, "B");
  EXPECT_EQ(program.settings.get(setting::activeProfile), "Work");
  EXPECT_FALSE(program.settings.get(setting::wrapAround));
  EXPECT_EQ(program.desktop.spacePlaces().places(), (std::vector<ManagedSpaceID>{1, 2, 3, 4}));
  EXPECT_EQ(program.backups.listText(),
            "1  2026-03-02 14:30  before restore\n2  2026-03-02 14:30  before removing desktop 2\n");
  EXPECT_EQ(program.backups.restore(1), Backups::Restored::all) << "the restoring is undone";
  EXPECT_EQ(store.meta("managed-2").name, std::nullopt);
}

TEST(Backups, AreTheLastFiveThatCanBeRead) {
  BackupsProgram program;
  for (const auto* const reason : {"1", "2", "3", "4", "5", "6"}) {
    program.backups.keep(reason);
    program.time.jumpWallClock(-1h);
  }
  const auto reasons = [&] {
    std::vector<std::string> all;
    for (const auto& copy : program.backups.list()) {
      all.push_back(copy.reason);
    }
    return all;
  };
  EXPECT_THAT(reasons(), ElementsAre("6", "5", "4", "3", "2"));
  auto& files = program.desktop.parts().files;
  files.corrupt(supportFolder + "Backups/5.json");
  files.replace(supportFolder + "Backups/x.json", "{}");
  files.replace(supportFolder + "Backups/4.json",
                R"({"reason": "nothing in it", "exportedAt": "2026-03-02T09:00:00Z"})");
  EXPECT_THAT(reasons(), ElementsAre("6", "3", "2"));
  files.setRoom(0);
  program.backups.keep("not kept");
  EXPECT_THAT(reasons(), ElementsAre("6", "3", "2"));
}

}  // namespace
}  // namespace tallowin
