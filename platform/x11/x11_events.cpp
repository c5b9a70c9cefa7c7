#include "platform/x11/x11_events.h"

#include <X11/keysym.h>
#include <algorithm>
#include <memory>
#include <ranges>
#include <utility>
#include <xcb/xtest.h>

namespace tallowin {

namespace {

struct HeldModifier {
  std::uint64_t flag;
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
  for (const auto& modifier : heldModifiers) {
    if ((flags & modifier.flag) != 0 || (modifier.flag == CGEventFlag::shift && key->shift)) {
      held.push_back(modifier.keysym);
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
