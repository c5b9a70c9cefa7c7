#include "platform/x11/key_map.h"

#include <X11/keysym.h>
#include <gtest/gtest.h>
#include <set>

namespace tallowin {
namespace {

// Columns: first layout plain and with Shift, second layout plain and with Shift, first layout with level 3.
const KeyMap frenchAndRussian = {
    .firstKeycode = 10,
    .keysymsPerKeycode = 5,
    .keysyms =
        {
            XK_ampersand,
            XK_1,
            XK_1,
            XK_exclam,
            0,  // 10
            XK_apostrophe,
            XK_4,
            XK_4,
            XK_semicolon,
            XK_braceleft,  // 11
            XK_a,
            XK_A,
            XK_Cyrillic_shorti,
            XK_Cyrillic_SHORTI,
            0,  // 12
            XK_parenleft,
            XK_5,
            XK_5,
            XK_percent,
            XK_bracketleft,  // 13
            XK_ISO_Level3_Shift,
            0,
            XK_ISO_Level3_Shift,
            0,
            0,  // 14
        },
};

TEST(KeyMap, FindsAKeysymWithAsLittleHeldAsPossible) {
  const struct {
    Keysym keysym;
    unsigned group;
    std::optional<KeyPosition> expected;
  } cases[] = {
      {XK_a, 0, KeyPosition{12}},
      {XK_1, 0, KeyPosition{.keycode = 10, .shift = true}},
      {XK_1, 1, KeyPosition{10}},
      {XK_bracketleft, 0, KeyPosition{.keycode = 13, .level3 = true}},
      {XK_a, 1, KeyPosition{12}},  // a shortcut while the Russian layout is in force
      {XK_Cyrillic_shorti, 0, KeyPosition{12}},
      {XK_a, 3, KeyPosition{12}},
      {XK_z, 0, std::nullopt},
  };
  for (const auto& [keysym, group, expected] : cases) {
    EXPECT_EQ(findKey(frenchAndRussian, keysym, group), expected) << keysym << " in " << group;
  }
  EXPECT_EQ(findKey(KeyMap{}, XK_a, 0), std::nullopt);
}

TEST(KeyMap, KeysThatTheLayoutLacksAreAtTheirPlaces) {
  EXPECT_EQ(findVirtualKey(frenchAndRussian, 18, 0), (KeyPosition{.keycode = 10, .shift = true}));
  EXPECT_EQ(findVirtualKey(frenchAndRussian, 50, 0), KeyPosition{49}) << "the grave accent, left of the digits";
  EXPECT_EQ(findVirtualKey(frenchAndRussian, 122, 0), std::nullopt) << "no function keys";
  EXPECT_EQ(findVirtualKey(frenchAndRussian, 10, 0), std::nullopt);
  std::set<std::uint8_t> places;
  for (VirtualKeyCode code = 0; code <= 50; ++code) {
    if (const auto key = findVirtualKey(KeyMap{}, code, 0)) {
      EXPECT_TRUE(places.insert(key->keycode).second) << code << " is at the place of another";
    }
  }
  EXPECT_EQ(places.size(), 47U) << "all that print but the space bar";
}

TEST(KeyMap, KnowsTheKeysOfTheAnsiKeyboard) {
  EXPECT_EQ(keysymFor(0), Keysym{XK_a});
  EXPECT_EQ(keysymFor(22), Keysym{XK_6});
  EXPECT_EQ(keysymFor(23), Keysym{XK_5});
  EXPECT_EQ(keysymFor(53), Keysym{XK_Escape});
  EXPECT_EQ(keysymFor(123), Keysym{XK_Left});
  EXPECT_EQ(keysymFor(10), std::nullopt);
  EXPECT_EQ(keysymFor(0xFFFF), std::nullopt);
  std::set<Keysym> keysyms;
  for (VirtualKeyCode code = 0; code < 128; ++code) {
    if (const auto keysym = keysymFor(code)) {
      EXPECT_TRUE(keysyms.insert(*keysym).second) << code << " repeats the key of another code";
    }
  }
  EXPECT_EQ(keysyms.size(), 68U);
}

}  // namespace
}  // namespace tallowin
