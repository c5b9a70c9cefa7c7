// Saving a Space and closing its windows, and reopening it, on a simulated desktop.

#include "windows/saved_spaces.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/words.h"
#include "tests/windows/windows_program.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

constexpr auto workingDesktop = R"({"start": "2026-03-02T09:00:00Z",
  "applications": [
    {"name": "Mail", "pid": 11, "bundleID": "app.mail"}, {"name": "Safari", "pid": 12, "bundleID": "com.apple.Safari"},
    {"name": "Chrome", "pid": 13, "bundleID": "com.google.Chrome"}, {"name": "Anonymous", "pid": 14}],
  "windows": [
    {"number": 1, "pid": 11, "frame": [0, 30, 500, 400]}, {"number": 2, "pid": 12, "frame": [10, 30, 500, 400]},
    {"number": 3, "pid": 11, "frame": [20, 30, 500, 400]}, {"number": 4, "pid": 14}, {"number": 5, "pid": 13},
    {"number": 6, "pid": 11, "space": 2}],
  "appleScripts": {"tell application \"Safari\" to get URL of every tab of front window":
                     ["https://a.example", "about:b"]}})";

const std::string file = "/home/user/.local/share/Tallowin/saved-spaces.json";

constexpr auto earlierRecord = R"([{"id": "7C0E2B4A-93D1-4F6E-8A05-1B2C3D4E5F60", "name": "Earlier",
  "savedAt": "2026-01-01T00:00:00Z", "apps": ["app.mail"], "colour": "of a newer version"}])";

/// A program with the user's commands and two browsers, of which only Safari tells its tabs.
struct SavingProgram : WindowsProgram {
  SavingProgram() : WindowsProgram(workingDesktop) {}

  void saveAndClose(ManagedSpaceID space) {
    lines.clear();
    savedSpaces.saveAndClose(spaceNumbered(space));
  }

  /// The applications and URLs opened since the last look at the journal.
  [[nodiscard]] std::vector<std::string> takeOpened() {
    std::vector<std::string> opened;
    for (const auto& line : std::exchange(lines, {})) {
      const auto record = PropertyList::parse(line);
      if (record["op"] == "openApplicationAtURL") {
        opened.push_back(record["application"]);
      } else if (record["op"] == "openURL") {
        opened.push_back(record["url"]);
      }
    }
    return opened;
  }

  SavedSpaces savedSpaces{services, contents};
};

TEST(SavedSpaces, SavesClosesAndReopens) {
  SavingProgram program;
  program.store.setName("Büro", program.spaceNumbered(1).id);
  program.saveAndClose(1);
  EXPECT_THAT(program.state().windows, SizeIs(1)) << "the one of Space 2";
  const auto list = program.savedSpaces.list();
  ASSERT_THAT(list, SizeIs(1));
  EXPECT_THAT(program.fileText(file), HasSubstr("\"savedAt\": \"2026-03-02T09:00:00Z\""));
  EXPECT_THAT(list[0].apps, ElementsAre("app.mail", "com.apple.Safari", "com.google.Chrome"));
  EXPECT_THAT(list[0].urls, ElementsAre("https://a.example", "about:b"));
  EXPECT_THAT(list[0].frames.at("app.mail"), ElementsAre(CGRect{{0, 30}, {500, 400}}, CGRect{{20, 30}, {500, 400}}));
  EXPECT_THAT(list[0].frames, SizeIs(3));

  EXPECT_EQ(program.savedSpaces.named("büRO"), list[0]);
  EXPECT_EQ(program.savedSpaces.named("Office"), std::nullopt);
  program.lines.clear();
  program.savedSpaces.restore(list[0]);
  EXPECT_THAT(program.takeOpened(),
              ElementsAre("/Applications/Mail.app", "/Applications/Chrome.app", "https://a.example", "about:b"))
      << "Safari comes with its tabs; Chrome, which told none, by itself";

  SavedSpace ofAnotherVersion;
  ofAnotherVersion.apps = {"com.apple.Safari", "app.gone", "app.mail"};
  program.savedSpaces.restore(ofAnotherVersion);
  EXPECT_THAT(program.takeOpened(), ElementsAre("/Applications/Safari.app", "/Applications/Mail.app"))
      << "no tab would open the browser";
}

TEST(SavedSpaces, RecordsAddUpAndKeepWhatNewerVersionsWrote) {
  SavingProgram program;
  program.files().overwrite(file, earlierRecord);
  program.saveAndClose(1);
  program.readWindows();
  program.saveAndClose(2);
  const auto list = program.savedSpaces.list();
  ASSERT_THAT(list, SizeIs(3));
  EXPECT_EQ(list[0].name, "Earlier");
  EXPECT_NE(list[1].id, list[2].id);
  EXPECT_THAT(program.fileText(file), HasSubstr("of a newer version"));
}

TEST(RandomUUID, HasItsVersionAndVariantWhateverTheBits) {
  EXPECT_EQ(randomUUID([] { return std::uint64_t{0}; }), "00000000-0000-4000-8000-000000000000");
  EXPECT_EQ(randomUUID([] { return ~std::uint64_t{0}; }), "FFFFFFFF-FFFF-4FFF-BFFF-FFFFFFFFFFFF");
  std::uint64_t next = 0x0123'4567'89AB'CDEF;
  EXPECT_EQ(randomUUID([&next] { return std::exchange(next, 0xFEDC'BA98'7654'3210); }),
            "01234567-89AB-4DEF-BEDC-BA9876543210");
}

}  // namespace
}  // namespace tallowin
