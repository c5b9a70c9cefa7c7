#include "platform/x11/x11_keyboard.h"

#include <X11/keysym.h>
#include <algorithm>
#include <cstddef>
#include <memory>
#include <ranges>
#include <utility>
#include <xcb/xtest.h>

namespace tallowin {

namespace {

/// A key of the ANSI keyboard, what it gives there, and the keycode of its place on every keyboard of that shape
/// (xkeyboard-config, keycodes/evdev); 0 for keys that every layout has.
struct KeyEntry {
  VirtualKeyCode keyCode;
  Keysym keysym;
  std::uint8_t position;
};

// HIToolbox/Events.h, kVK_ANSI_* and the keys that do not depend on the layout.
constexpr KeyEntry keyEntries[] = {
    {0, XK_a, 38},      {1, XK_s, 39},          {2, XK_d, 40},
    {3, XK_f, 41},      {4, XK_h, 43},          {5, XK_g, 42},
    {6, XK_z, 52},      {7, XK_x, 53},          {8, XK_c, 54},
    {9, XK_v, 55},      {11, XK_b, 56},         {12, XK_q, 24},
    {13, XK_w, 25},     {14, XK_e, 26},         {15, XK_r, 27},
    {16, XK_y, 29},     {17, XK_t, 28},         {18, XK_1, 10},
    {19, XK_2, 11},     {20, XK_3, 12},         {21, XK_4, 13},
    {22, XK_6, 15},     {23, XK_5, 14},         {24, XK_equal, 21},
    {25, XK_9, 18},     {26, XK_7, 16},         {27, XK_minus, 20},
    {28, XK_8, 17},     {29, XK_0, 19},         {30, XK_bracketright, 35},
    {31, XK_o, 32},     {32, XK_u, 30},         {33, XK_bracketleft, 34},
    {34, XK_i, 31},     {35, XK_p, 33},         {36, XK_Return, 0},
    {37, XK_l, 46},     {38, XK_j, 44},         {39, XK_apostrophe, 48},
    {40, XK_k, 45},     {41, XK_semicolon, 47}, {42, XK_backslash, 51},
    {43, XK_comma, 59}, {44, XK_slash, 61},     {45, XK_n, 57},
    {46, XK_m, 58},     {47, XK_period, 60},    {48, XK_Tab, 0},
    {49, XK_space, 0},  {50, XK_grave, 49},     {51, XK_BackSpace, 0},
    {53, XK_Escape, 0}, {96, XK_F5, 0},         {97, XK_F6, 0},
    {98, XK_F7, 0},     {99, XK_F3, 0},         {100, XK_F8, 0},
    {101, XK_F9, 0},    {103, XK_F11, 0},       {105, XK_F13, 0},
    {109, XK_F10, 0},   {111, XK_F12, 0},       {118, XK_F4, 0},
    {120, XK_F2, 0},    {122, XK_F1, 0},        {123, XK_Left, 0},
    {124, XK_Right, 0}, {125, XK_Down, 0},      {126, XK_Up, 0},
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

/// The keys that are held for the modifiers of events.
struct HeldModifier {
  std::uint64_t flag;  ///< CGEventFlag
  Keysym keysym;
};
constexpr HeldModifier heldModifiers[] = {
    {CGEventFlag::command, XK_Super_L},
    {CGEventFlag::alternate, XK_Alt_L},
    {CGEventFlag::control, XK_Control_L},
    {CGEventFlag::shift, XK_Shift_L},
};

/// The bits of the core keyboard state that hold the layout in force (X Keyboard Extension, effective group).
constexpr unsigned groupShift = 13;
constexpr unsigned groupMask = 3;

struct KeyEvent : CGEvent {
  KeyEvent(VirtualKeyCode code, bool isDown) : keyCode(code), down(isDown) {}

  VirtualKeyCode keyCode;
  bool down;
  std::uint64_t flags = 0;
};

/// Everything to press for a key, in order, itself last; nothing when the keyboard cannot give it.
std::vector<std::uint8_t> keycodesToPress(const KeyMap& map, VirtualKeyCode keyCode, std::uint64_t flags,
                                          unsigned group) {
  const auto key = findVirtualKey(map, keyCode, group);
  if (!key) {
    return {};
  }
  std::vector<Keysym> held;
  for (const auto& [flag, keysym] : heldModifiers) {
    if ((flags & flag) != 0 || (flag == CGEventFlag::shift && key->shift)) {
      held.push_back(keysym);
    }
  }
  if (key->level3) {
    held.push_back(XK_ISO_Level3_Shift);
  }
  std::vector<std::uint8_t> keycodes;
  for (const auto modifier : held) {
    const auto position = findKey(map, modifier, group);
    if (!position) {
      return {};  // without its modifier the key would do something else
    }
    keycodes.push_back(position->keycode);
  }
  keycodes.push_back(key->keycode);
  return keycodes;
}

}  // namespace

std::optional<Keysym> keysymFor(VirtualKeyCode keyCode) {
  const auto found = std::ranges::find(keyEntries, keyCode, &KeyEntry::keyCode);
  return found == std::end(keyEntries) ? std::nullopt : std::optional<Keysym>(found->keysym);
}

std::optional<KeyPosition> findVirtualKey(const KeyMap& map, VirtualKeyCode keyCode, unsigned group) {
  const auto entry = std::ranges::find(keyEntries, keyCode, &KeyEntry::keyCode);
  if (entry == std::end(keyEntries)) {
    return std::nullopt;
  }
  const auto key = findKey(map, entry->keysym, group);
  return key || entry->position == 0 ? key : KeyPosition{entry->position};
}

std::optional<KeyPosition> findKey(const KeyMap& map, Keysym keysym, unsigned group) {
  const auto here = findKeyInGroup(map, keysym, group);
  return here ? here : findKeyInGroup(map, keysym, group == 0 ? 1 : 0);
}

xcb_get_keyboard_mapping_cookie_t requestKeyMap(X11Connection& connection) {
  const auto* setup = xcb_get_setup(connection.raw());
  const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
  return xcb_get_keyboard_mapping(connection.raw(), setup->min_keycode, count);
}

KeyMap takeKeyMap(X11Connection& connection, xcb_get_keyboard_mapping_cookie_t cookie) {
  const auto answer = connection.reply(xcb_get_keyboard_mapping_reply, cookie);
  if (!answer) {
    return {};
  }
  const auto* keysyms = xcb_get_keyboard_mapping_keysyms(answer.get());
  return {xcb_get_setup(connection.raw())->min_keycode, answer->keysyms_per_keycode,
          std::vector<Keysym>(keysyms, keysyms + xcb_get_keyboard_mapping_keysyms_length(answer.get()))};
}

X11Events::~X11Events() {
  while (!held_.empty()) {
    releaseKey(held_.begin()->first);
  }
}

CGEventPtr X11Events::CGEventCreateKeyboardEvent(VirtualKeyCode keyCode, bool down) {
  return std::make_unique<KeyEvent>(keyCode, down);
}

void X11Events::CGEventSetFlags(CGEvent& event, std::uint64_t flags) {
  if (auto* const key = dynamic_cast<KeyEvent*>(&event)) {
    key->flags = flags;
  }
}

void X11Events::CGEventPost(CGEventTap /*tap*/, const CGEvent& event) {
  const auto* const key = dynamic_cast<const KeyEvent*>(&event);
  if (key == nullptr || !connection_.hasExtension(xcb_test_id)) {
    return;
  }
  if (key->down) {
    pressKey(key->keyCode, key->flags);
  } else {
    releaseKey(key->keyCode);
  }
  connection_.flush();
}

void X11Events::pressKey(VirtualKeyCode keyCode, std::uint64_t flags) {
  if (held_.contains(keyCode)) {
    return;
  }
  const auto mapCookie = requestKeyMap(connection_);
  const auto pointerCookie = xcb_query_pointer(connection_.raw(), connection_.root());
  const auto map = takeKeyMap(connection_, mapCookie);
  const auto pointer = connection_.reply(xcb_query_pointer_reply, pointerCookie);
  const unsigned group = pointer ? pointer->mask >> groupShift & groupMask : 0;
  auto keycodes = keycodesToPress(map, keyCode, flags, group);
  for (const auto keycode : keycodes) {
    fake(XCB_KEY_PRESS, keycode);
  }
  if (!keycodes.empty()) {
    held_[keyCode] = std::move(keycodes);
  }
}

void X11Events::releaseKey(VirtualKeyCode keyCode) {
  const auto held = held_.extract(keyCode);
  if (held.empty()) {
    return;
  }
  for (const auto keycode : held.mapped() | std::views::reverse) {
    fake(XCB_KEY_RELEASE, keycode);
  }
}

void X11Events::fake(std::uint8_t type, std::uint8_t keycode) {
  xcb_test_fake_input(connection_.raw(), type, keycode, XCB_CURRENT_TIME, connection_.root(), 0, 0, 0);
}

}  // namespace tallowin
