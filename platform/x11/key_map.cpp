#include "platform/x11/key_map.h"

#include <X11/keysym.h>
#include <algorithm>
#include <array>
#include <cstddef>

namespace tallowin {

namespace {

struct KeyEntry {
  VirtualKeyCode keyCode;
  Keysym keysym;
};

// HIToolbox/Events.h, kVK_ANSI_* and the keys that do not depend on the layout.
constexpr KeyEntry keyEntries[] = {
    {0, XK_a},       {1, XK_s},          {2, XK_d},
    {3, XK_f},       {4, XK_h},          {5, XK_g},
    {6, XK_z},       {7, XK_x},          {8, XK_c},
    {9, XK_v},       {11, XK_b},         {12, XK_q},
    {13, XK_w},      {14, XK_e},         {15, XK_r},
    {16, XK_y},      {17, XK_t},         {18, XK_1},
    {19, XK_2},      {20, XK_3},         {21, XK_4},
    {22, XK_6},      {23, XK_5},         {24, XK_equal},
    {25, XK_9},      {26, XK_7},         {27, XK_minus},
    {28, XK_8},      {29, XK_0},         {30, XK_bracketright},
    {31, XK_o},      {32, XK_u},         {33, XK_bracketleft},
    {34, XK_i},      {35, XK_p},         {36, XK_Return},
    {37, XK_l},      {38, XK_j},         {39, XK_apostrophe},
    {40, XK_k},      {41, XK_semicolon}, {42, XK_backslash},
    {43, XK_comma},  {44, XK_slash},     {45, XK_n},
    {46, XK_m},      {47, XK_period},    {48, XK_Tab},
    {49, XK_space},  {50, XK_grave},     {51, XK_BackSpace},
    {53, XK_Escape}, {96, XK_F5},        {97, XK_F6},
    {98, XK_F7},     {99, XK_F3},        {100, XK_F8},
    {101, XK_F9},    {103, XK_F11},      {109, XK_F10},
    {111, XK_F12},   {118, XK_F4},       {120, XK_F2},
    {122, XK_F1},    {123, XK_Left},     {124, XK_Right},
    {125, XK_Down},  {126, XK_Up},
};

/// How a column of the core keyboard map is reached (X Keyboard Extension, core keyboard mapping).
struct Column {
  unsigned group;
  std::size_t index;
  bool shift;
  bool level3;
};

constexpr Column columns[] = {
    {0, 0, false, false}, {0, 1, true, false}, {0, 4, false, true}, {0, 5, true, true},
    {1, 2, false, false}, {1, 3, true, false}, {1, 6, false, true}, {1, 7, true, true},
};

std::optional<std::uint8_t> keycodeInColumn(const KeyMap& map, Keysym keysym, std::size_t column) {
  if (column >= map.keysymsPerKeycode) {
    return std::nullopt;
  }
  auto keycode = static_cast<unsigned>(map.firstKeycode);
  for (std::size_t at = column; at < map.keysyms.size() && keycode < 256; at += map.keysymsPerKeycode, ++keycode) {
    if (map.keysyms[at] == keysym) {
      return static_cast<std::uint8_t>(keycode);
    }
  }
  return std::nullopt;
}

std::optional<KeyPosition> findKeyInGroup(const KeyMap& map, Keysym keysym, unsigned group) {
  for (const auto& column : columns) {
    if (column.group != group) {
      continue;
    }
    if (const auto keycode = keycodeInColumn(map, keysym, column.index)) {
      return KeyPosition{*keycode, column.shift, column.level3};
    }
  }
  return std::nullopt;
}

}  // namespace

std::optional<Keysym> keysymFor(VirtualKeyCode keyCode) {
  const auto found = std::ranges::find(keyEntries, keyCode, &KeyEntry::keyCode);
  return found == std::end(keyEntries) ? std::nullopt : std::optional<Keysym>(found->keysym);
}

std::optional<KeyPosition> findKey(const KeyMap& map, Keysym keysym, unsigned group) {
  const auto here = findKeyInGroup(map, keysym, group);
  return here ? here : findKeyInGroup(map, keysym, group == 0 ? 1 : 0);
}

}  // namespace tallowin
