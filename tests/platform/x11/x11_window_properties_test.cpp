#include "platform/x11/x11_window_properties.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "platform/x11/x11_process_identity.h"
#include "tests/platform/x11/property_values.h"

namespace tallowin {
namespace {

TEST(X11WindowProperties, AreReadWhateverTheyHold) {
  using namespace std::string_view_literals;
  using Pair = std::pair<std::string, std::string>;
  EXPECT_EQ(parseWMClass(text("xterm\0XTerm\0"sv)), Pair("xterm", "XTerm"));
  EXPECT_EQ(parseWMClass(text("only"sv)), Pair("only", ""));
  EXPECT_EQ(parseWMClass(text("\0\0more\0"sv)), Pair("", ""));
  EXPECT_EQ(parseWMClass(text("caf\xE9\0X\0"sv)), Pair("caf\xC3\xA9", "X"));
  EXPECT_EQ(parseWMClass(words({65})), Pair("", ""));
  EXPECT_EQ(parseText(text("a\xC3\xA9\xFF\0b"sv), true), "a\xC3\xA9\xEF\xBF\xBD");
  EXPECT_EQ(parseText(text("a\xE9"sv), false), "a\xC3\xA9");
  EXPECT_EQ(parseText({}, true), "");
  EXPECT_EQ(parseFrameExtents(words({1, 2, 3, 4, 5})), (FrameExtents{1, 2, 3, 4}));
  EXPECT_EQ(parseFrameExtents(words({1, 2, 3})), std::nullopt);
  EXPECT_EQ(parseFrameExtents(words({0xFFFFFFFF, 2, 3, 4})), std::nullopt);
  EXPECT_EQ(parseOpacity({}), 1);
  EXPECT_EQ(parseOpacity(words({0})), 0);
  EXPECT_EQ(parseOpacity(words({0xFFFFFFFF})), 1);
  EXPECT_EQ(parseWords({.format = 32, .bytes = "12345"}).size(), 1U);
}

TEST(X11WindowProperties, FramesHaveTheDecorationAround) {
  const FrameExtents extents{1, 2, 30, 4};
  EXPECT_EQ(withExtents({{100, 100}, {50, 60}}, extents), (CGRect{{99, 70}, {53, 94}}));
  EXPECT_EQ(clientSize({53, 94}, extents), (CGSize{50, 60}));
  EXPECT_EQ(clientSize({2, 2}, extents), (CGSize{1, 1}));
}

TEST(X11ProcessIdentity, TrustsTheServerThenTheClientOfThisMachine) {
  const std::vector<std::string> local = {"localhost", "box.example.org", "box"};
  using Pid = std::optional<ProcessID>;
  const struct {
    const char* what;
    ProcessEvidence evidence;
    Pid expected;
  } cases[] = {
      {"all agree", {7, "box", 7}, 7},
      {"the number of a container", {7, "box", 4711}, 4711},
      {"no X-Resource", {7, "box.example.org", {}}, 7},
      {"another domain", {7, "box.lan", {}}, 7},
      {"another machine, through a local proxy", {7, "elsewhere", 99}, {}},
      {"no machine, but the server knows", {{}, "", 8}, 8},
      {"a number without a machine", {7, "", {}}, {}},
      {"the server's answer is no process", {7, "box", 0}, 7},
      {"no process", {0, "box", {}}, {}},
      {"a number that stands for something else", {0x40000001, "box", {}}, {}},
      {"nothing", {{}, "", {}}, {}},
  };
  for (const auto& [what, evidence, expected] : cases) {
    EXPECT_EQ(processOf(evidence, local), expected) << what;
  }
}

TEST(X11ProcessIdentity, StandInsTellClientsApart) {
  constexpr std::uint32_t mask = 0x1FFFFF;
  EXPECT_EQ(standInPid(0x600001, mask), standInPid(0x6FFFFF & ~0x100000U, mask));
  EXPECT_NE(standInPid(0x600001, mask), standInPid(0x800001, mask));
  for (const std::uint32_t window : {0U, 0x200000U, 0x1FFFFFFFU}) {
    EXPECT_GE(standInPid(window, mask), firstStandInPid);
    EXPECT_GE(standInPid(window, 0), firstStandInPid);
  }
  EXPECT_EQ(programName(getpid()), "tests_platform_x11");
  EXPECT_EQ(programName(dockPid), "");
  EXPECT_EQ(programName(-1), "");
}

}  // namespace
}  // namespace tallowin
