// What monitors, keyboards, pictures and properties of the server say, as values.

#include <X11/keysym.h>
#include <array>
#include <gtest/gtest.h>
#include <numeric>
#include <set>
#include <unistd.h>

#include "platform/x11/x11_displays.h"
#include "platform/x11/x11_keyboard.h"
#include "platform/x11/x11_properties.h"
#include "tests/platform/x11/property_values.h"

namespace tallowin {
namespace {

using namespace std::string_view_literals;

/// A base block of maker "DEL", product 0x40F3, serial 0x0001E240, with a right checksum.
std::string baseBlock(std::string_view descriptor = {}) {
  std::string block("\x00\xFF\xFF\xFF\xFF\xFF\xFF\x00\x10\xAC\xF3\x40\x40\xE2\x01\x00", 16);
  block.resize(128, '\0');
  block.replace(72, descriptor.size(), descriptor);
  const auto sum = std::accumulate(block.begin(), block.end(), 0U,
                                   [](unsigned total, char byte) { return total + static_cast<unsigned char>(byte); });
  block[127] = static_cast<char>(256 - sum % 256);
  return block;
}

TEST(MonitorIdentity, NamesMakerProductAndSerial) {
  const struct {
    const char* what;
    std::string edid;
    std::optional<std::string> expected;
  } cases[] = {
      {"numbers only", baseBlock(), "DEL-40F3-0001E240"},
      {"serial text", baseBlock("\0\0\0\xFF\0MT0167B\n   \x20"sv), "DEL-40F3-0001E240-MT0167B"},
      {"serial text of full length", baseBlock("\0\0\0\xFF\0ABCDEFGHIJKLM"sv), "DEL-40F3-0001E240-ABCDEFGHIJKLM"},
      {"serial text of blanks and rubbish", baseBlock("\0\0\0\xFF\0 \x01\xFF\n"sv), "DEL-40F3-0001E240"},
      {"another descriptor", baseBlock("\0\0\0\xFC\0DELL U2415\n"sv), "DEL-40F3-0001E240"},
      {"cut short", baseBlock().substr(0, 127), std::nullopt},
      {"no header", std::string("x").append(baseBlock()), std::nullopt},
      {"wrong checksum", baseBlock().replace(20, 1, "\1"), std::nullopt},
  };
  for (const auto& [what, edid, expected] : cases) {
    EXPECT_EQ(monitorIdentity(edid), expected) << what;
  }
}

// Columns: first layout plain and with Shift, second layout plain and with Shift, first layout with level 3.
const KeyMap frenchAndRussian = [] {
  using Row = std::array<Keysym, 5>;
  KeyMap map{.firstKeycode = 10, .keysymsPerKeycode = 5, .keysyms = {}};
  for (const auto& row : {Row{XK_ampersand, XK_1, XK_1, XK_exclam, 0},
                          {XK_apostrophe, XK_4, XK_4, XK_semicolon, XK_braceleft},
                          {XK_a, XK_A, XK_Cyrillic_shorti, XK_Cyrillic_SHORTI, 0},
                          {XK_parenleft, XK_5, XK_5, XK_percent, XK_bracketleft},
                          {XK_ISO_Level3_Shift, 0, XK_ISO_Level3_Shift, 0, 0}}) {
    map.keysyms.insert(map.keysyms.end(), row.begin(), row.end());
  }
  return map;
}();

TEST(KeyMap, FindsAKeysymWithAsLittleHeldAsPossible) {
  const struct {
    Keysym keysym;
    unsigned group;
    std::optional<KeyPosition> expected;
  } cases[] = {
      {XK_a, 0, KeyPosition{12}},
      {XK_1, 0, KeyPosition{.keycode = 10, .shift = true}},
      {XK_bracketleft, 0, KeyPosition{.keycode = 13, .level3 = true}},
      {XK_a, 1, KeyPosition{12}},  // a shortcut while the Russian layout is in force
      {XK_a, 3, KeyPosition{12}},
      {XK_z, 0, std::nullopt},
  };
  for (const auto& [keysym, group, expected] : cases) {
    EXPECT_EQ(findKey(frenchAndRussian, keysym, group), expected) << keysym << " in " << group;
  }
}

TEST(KeyMap, KeysThatTheLayoutLacksAreAtTheirPlaces) {
  EXPECT_EQ(findVirtualKey(frenchAndRussian, 18, 0), (KeyPosition{.keycode = 10, .shift = true}));
  EXPECT_EQ(findVirtualKey(frenchAndRussian, 50, 0), KeyPosition{49}) << "the grave accent, left of the digits";
  EXPECT_EQ(findVirtualKey(frenchAndRussian, 122, 0), std::nullopt) << "no function keys";
  EXPECT_EQ(findVirtualKey(frenchAndRussian, 10, 0), std::nullopt);
  std::set<int> places;
  std::set<std::optional<Keysym>> keysyms;
  for (VirtualKeyCode code = 0; code < 128; ++code) {
    places.insert(findVirtualKey(KeyMap{}, code, 0).value_or(KeyPosition{}).keycode);
    keysyms.insert(keysymFor(code));
  }
  EXPECT_EQ(places.size(), 1U + 47U) << "all that print but the space bar, each at a place of its own";
  EXPECT_EQ(keysyms.size(), 1U + 69U) << "no code repeats the key of another";
}

TEST(Pixels, EveryLayoutGivesTheSameColours) {
  // Two pixels: an orange (FF 80 00, or 82 where green has six bits) and a blue (00 00 FF).
  const struct {
    const char* what;
    PixelFormat format;
    std::string_view row;
  } cases[] = {
      {"usual", {}, "\x00\x80\xFF\x5A\xFF\x00\x00\x5A"sv},
      {"big-endian", {.leastSignificantByteFirst = false}, "\x5A\xFF\x80\x00\x5A\x00\x00\xFF"sv},
      {"red and blue swapped", {.redMask = 0xFF, .blueMask = 0xFF0000}, "\xFF\x80\x00\x5A\x00\x00\xFF\x5A"sv},
      {"packed, filled up", {.bitsPerPixel = 24}, "\x00\x80\xFF\xFF\x00\x00\x5A\x5A"sv},
      {"packed, not filled up", {.bitsPerPixel = 24, .scanlinePad = 8}, "\x00\x80\xFF\xFF\x00\x00"sv},
      {"five bits, of which all set are full white",
       {.bitsPerPixel = 16, .redMask = 0xF800, .greenMask = 0x7E0, .blueMask = 0x1F},
       "\x00\xFC\x1F\x00"sv},
      // 0x3FF, 0x202 and 0x000; then 0, 0, 0x3FF.
      {"ten bits",
       {.redMask = 0x3FF00000, .greenMask = 0xFFC00, .blueMask = 0x3FF},
       "\x00\x08\xF8\x3F\xFF\x03\x00\x00"sv},
  };
  for (const auto& [what, format, row] : cases) {
    Image image{.width = 2, .height = 0, .pixels = {}};
    EXPECT_TRUE(appendRows(image, row, 1, format)) << what;
    const std::uint32_t orange = format.bitsPerPixel == 16 ? 0xFFFF8200 : 0xFFFF8000;
    EXPECT_EQ(image, (Image{2, 1, {orange, 0xFF0000FF}})) << what;
  }
}

TEST(Pixels, WhatIsNotARowIsRefused) {
  const struct {
    const char* what;
    PixelFormat format;
    std::string_view bytes;
    int width;
    int rows;
  } cases[] = {
      {"too short", {}, "\0\0\0"sv, 1, 1},
      {"odd pixels", {.bitsPerPixel = 12}, "\0\0\0\0"sv, 1, 1},
      {"odd padding", {.scanlinePad = 0}, "\0\0\0\0"sv, 1, 1},
      {"no red", {.redMask = 0}, "\0\0\0\0"sv, 1, 1},
  };
  for (const auto& [what, format, bytes, width, rows] : cases) {
    Image image{.width = width, .height = 0, .pixels = {}};
    EXPECT_FALSE(appendRows(image, bytes, rows, format)) << what;
    EXPECT_EQ(image.height, 0) << what;
    EXPECT_TRUE(image.pixels.empty()) << what;
  }
}

TEST(RootProperties, DesktopNamesAreReadHoweverTheyEnd) {
  using Names = std::vector<std::string>;
  const struct {
    const char* what;
    X11Property property;
    Names expected;
  } cases[] = {
      {"words", words({0x616161}), {}},
      {"without final zero", text({"Mail\0Code", 9}), {"Mail", "Code"}},
      {"an empty one between", text({"Mail\0\0Code\0", 11}), {"Mail", "", "Code"}},
      {"beyond ASCII", text({"Pr\xC3\xA9sentation\0\xE6\x97\xA5\0", 18}), {"Pr\xC3\xA9sentation", "\xE6\x97\xA5"}},
      {"no UTF-8", text({"a\xFF\0b\xE6\x97", 6}), {"a\xEF\xBF\xBD", "b\xEF\xBF\xBD\xEF\xBF\xBD"}},
  };
  for (const auto& [what, property, expected] : cases) {
    EXPECT_EQ(parseDesktopNames(property), expected) << what;
  }
  EXPECT_EQ(parseDesktopNames(text(std::string(100'000, '\0'))).size(), maximumDesktopCount);
}

TEST(X11WindowProperties, AreReadWhateverTheyHold) {
  using Pair = std::pair<std::string, std::string>;
  EXPECT_EQ(parseWMClass(text("xterm\0XTerm\0"sv)), Pair("xterm", "XTerm"));
  EXPECT_EQ(parseWMClass(text("\0\0more\0"sv)), Pair("", ""));
  EXPECT_EQ(parseWMClass(text("caf\xE9\0X\0"sv)), Pair("caf\xC3\xA9", "X"));
  EXPECT_EQ(parseText(text("a\xC3\xA9\xFF\0b"sv), true), "a\xC3\xA9\xEF\xBF\xBD");
  EXPECT_EQ(parseText(text("a\xE9"sv), false), "a\xC3\xA9");
  EXPECT_EQ(parseFrameExtents(words({1, 2, 3, 4, 5})), (FrameExtents{1, 2, 3, 4}));
  EXPECT_EQ(parseFrameExtents(words({1, 2, 3})), std::nullopt);
  EXPECT_EQ(parseFrameExtents(words({0xFFFFFFFF, 2, 3, 4})), std::nullopt);
  EXPECT_EQ(parseOpacity({}), 1);
  EXPECT_EQ(parseOpacity(words({0})), 0);
  EXPECT_EQ(parseOpacity(words({0xFFFFFFFF})), 1);
  EXPECT_EQ(parseWords({.format = 32, .bytes = "12345"}).size(), 1U);
  EXPECT_EQ(clientSize({2, 2}, {1, 2, 30, 4}), (CGSize{1, 1}));
}

TEST(X11ProcessIdentity, TrustsTheServerThenTheClientOfThisMachine) {
  const std::vector<std::string> local = {"localhost", "box.example.org", "box"};
  using Pid = std::optional<ProcessID>;
  const struct {
    const char* what;
    ProcessEvidence evidence;
    Pid expected;
  } cases[] = {
      {"the number of a container", {7, "box", 4711}, 4711},
      {"another domain", {7, "box.lan", {}}, 7},
      {"another machine, through a local proxy", {7, "elsewhere", 99}, {}},
      {"no machine, but the server knows", {{}, "", 8}, 8},
      {"a number without a machine", {7, "", {}}, {}},
      {"the server's answer is no process", {7, "box", 0}, 7},
      {"a number that stands for something else", {0x40000001, "box", {}}, {}},
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
  EXPECT_EQ(programName(-1), "");
}

}  // namespace
}  // namespace tallowin
