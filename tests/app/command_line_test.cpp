#include "app/command_line.h"

#include <gtest/gtest.h>
#include <sstream>

namespace tallowin {
namespace {

std::expected<CommandLine, std::string> parse(const std::string& words, std::optional<std::string> platform = {}) {
  std::istringstream stream(words);
  std::vector<std::string> arguments;
  for (std::string word; stream >> word;) {
    arguments.push_back(word);
  }
  return parseCommandLine(arguments, platform);
}

TEST(CommandLine, TheFirstModeInTheProgramsOrderRuns) {
  const std::pair<const char*, Mode> cases[] = {
      {"", Mode::resident},
      {"--capture --probe", Mode::probe},
      {"--capture --switch 3", Mode::switchSpace},
      {"--platform nonsense --help", Mode::help},
      {"--probe --help", Mode::probe},
      {"--switch --probe", Mode::probe},
      {"--settings --probe", Mode::probe},
      {"--probe extra --set b c", Mode::probe},
      {"edit 2 -- --capture", Mode::capture},
      {"--probe --home", Mode::probe},
  };
  for (const auto& [words, mode] : cases) {
    const auto line = parse(words);
    ASSERT_TRUE(line) << words << ": " << line.error();
    EXPECT_EQ(line->mode, mode) << words;
  }
}

TEST(CommandLine, ValuesReachTheirPlaces) {
  CommandLine expected;
  expected.mode = Mode::switchSpace;
  expected.desktopNumber = 12;
  expected.classic = true;
  expected.platform = PlatformChoice::simulated;
  expected.simulate = "s.json";
  expected.journal = "j";
  expected.home = "/h";
  expected.verbose = true;
  EXPECT_EQ(parse("--simulate s.json --journal j --switch 12 classic --home /h --verbose"), expected);
  EXPECT_EQ(parse("--port 65535")->port, 65535);

  EXPECT_EQ(parse("--settings nonsense")->settingsTab, std::nullopt) << "it starts all the same";
  EXPECT_EQ(parse("--settings nonsense")->warning.find("--settings is one of general"), 0U);
  const auto set = parse("--set switchMode classic");
  ASSERT_TRUE(set);
  EXPECT_EQ(set->settingKey + "=" + set->settingValue, "switchMode=classic");
}

TEST(CommandLine, TheEnvironmentNamesThePlatformUnlessTheArgumentsDo) {
  EXPECT_EQ(parse("--probe", "none")->platform, PlatformChoice::none);
  EXPECT_EQ(parse("--probe", "")->platform, PlatformChoice::automatic);
  EXPECT_EQ(parse("--probe --platform x11", "none")->platform, PlatformChoice::x11);
  EXPECT_EQ(parse("--scenario s", "x11")->platform, PlatformChoice::simulated);
}

TEST(CommandLine, MistakesAreSaidInOneLineWithWhatWouldBeRight) {
  struct Case {
    const char* words;
    const char* said;
  };
  const Case cases[] = {
      {"--prob", "unknown argument \"--prob\"; --help lists what there is"},
      {"--switch", "--switch needs the number of a desktop, such as --switch 3"},
      {"--switch --capture", "--switch needs the number of a desktop, such as --switch 3"},
      {"--switch three", "--switch needs the number of a desktop, such as --switch 3, not \"three\""},
      {"--switch 99999999999999999999", "not \"99999999999999999999\""},
      {"--get a --set b c", "one at a time"},
      {"--version2 --home", "--home DIR"},
      {"--port 0", "from 1 to 65535"},
      {"--port http", "from 1 to 65535"},
      {"classic", "classic goes with --switch N"},
      {"--platform wayland", "--platform is one of auto, x11, simulated, none, not \"wayland\""},
      {"--scenario a --simulate b", "give one of them"},
      {"--probe --journal j", "--journal FILE goes with --simulate FILE"},
      {"--simulate a --platform x11", "leave --platform out"},
  };
  for (const auto& [words, said] : cases) {
    const auto line = parse(words);
    ASSERT_FALSE(line) << words;
    EXPECT_NE(line.error().find(said), std::string::npos) << line.error();
    EXPECT_EQ(line.error().find('\n'), std::string::npos) << line.error();
  }
  EXPECT_NE(parseCommandLine(std::vector<std::string>{"--home", ""}, {}).error().find("--home"), std::string::npos);
  EXPECT_NE(parse("--probe", "wayland").error().find("TALLOWIN_PLATFORM is one of"), std::string::npos);
}

}  // namespace
}  // namespace tallowin
