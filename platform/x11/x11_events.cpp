#include "platform/x11/x11_events.h"

#include <X11/keysym.h>
#include <algorithm>
#include <cmath>
#include <limits>
#include <ranges>
#include <utility>
#include <xcb/xtest.h>

#include "platform/x11/x11_keyboard.h"

namespace tallowin {

namespace {

struct Modifier {
  std::uint64_t flag;
  Keysym keysym;
};

constexpr Modifier modifiers[] = {
    {CGEventFlag::command, XK_Super_L},
    {CGEventFlag::alternate, XK_Alt_L},
    {CGEventFlag::control, XK_Control_L},
    {CGEventFlag::shift, XK_Shift_L},
};

constexpr std::uint8_t leftButton = 1;

/// The bits of the core keyboard state that hold the layout in force (X Keyboard Extension, effective group).
constexpr unsigned groupShift = 13;
constexpr unsigned groupMask = 3;

std::int16_t coordinate(double value) {
  constexpr double lowest = std::numeric_limits<std::int16_t>::min();
  constexpr double highest = std::numeric_limits<std::int16_t>::max();
  return static_cast<std::int16_t>(std::fmin(std::fmax(std::round(value), lowest), highest));
}

/// Everything to press for a key, in order, itself last; nothing when the keyboard cannot give it.
std::vector<std::uint8_t> keycodesToPress(const KeyMap& map, VirtualKeyCode keyCode, std::uint64_t flags,
                                          unsigned group) {
  const auto key = findVirtualKey(map, keyCode, group);
  if (!key) {
    return {};
  }
  std::vector<Keysym> held;
  for (const auto& modifier : modifiers) {
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

CGPoint X11Events::pointerLocation() {
  return glance_.present()->pointer;
}

CGPoint X11Events::mouseLocation() {
  const auto view = glance_.present();
  return {view->pointer.x, view->rootSize.height - view->pointer.y};
}

std::uint32_t X11Events::pressedMouseButtons() {
  const std::uint32_t mask = glance_.present()->held;
  return ((mask & XCB_BUTTON_MASK_1) != 0 ? 1U : 0U) | ((mask & XCB_BUTTON_MASK_3) != 0 ? 2U : 0U) |
         ((mask & XCB_BUTTON_MASK_2) != 0 ? 4U : 0U);
}

void X11Events::CGWarpMouseCursorPosition(CGPoint position) {
  xcb_warp_pointer(connection_.raw(), XCB_WINDOW_NONE, connection_.root(), 0, 0, 0, 0, coordinate(position.x),
                   coordinate(position.y));
  connection_.flush();
}

void X11Events::postInput(const EmulatedEvent& event) {
  if (!connection_.hasExtension(xcb_test_id)) {
    return;
  }
  const auto keyCode = static_cast<VirtualKeyCode>(event.integer(EmulatedEvent::keyCodeField));
  switch (event.type()) {
    case EmulatedEvent::keyDown:
      if (!missionControl_.keyDown(keyCode)) {
        pressKey(keyCode, event.flags);
      }
      break;
    case EmulatedEvent::keyUp:
      releaseKey(keyCode);
      break;
    default:
      postMouse(static_cast<CGMouseEventType>(event.type()), event.location);
  }
  connection_.flush();
}

void X11Events::pressKey(VirtualKeyCode keyCode, std::uint64_t flags) {
  if (held_.contains(keyCode)) {
    return;
  }
  const auto cookie = requestKeyMap(connection_);
  const unsigned group = glance_.look()->held >> groupShift & groupMask;
  const auto map = takeKeyMap(connection_, cookie);
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

void X11Events::postMouse(CGMouseEventType type, CGPoint location) {
  const bool down = type == CGMouseEventType::leftMouseDown;
  const bool up = type == CGMouseEventType::leftMouseUp;
  const bool dragged = type == CGMouseEventType::leftMouseDragged;
  if (!down && !up && !dragged && type != CGMouseEventType::mouseMoved) {
    return;
  }
  if (dragged) {
    drag(location);
  } else {
    fake(XCB_MOTION_NOTIFY, 0, location);
  }
  missionControl_.pointerMoved(location);
  if (down) {
    // What is pressed on Mission Control is released on it.
    clicking_ = missionControl_.isOpen();
  }
  if (up && std::exchange(clicking_, false)) {
    missionControl_.clicked(location);
  } else if (down ? !clicking_ : up) {
    fake(down ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, leftButton);
  }
}

/// Window managers begin to move a window after several motions, the farthest of which is beyond their threshold; a
/// single one is not enough however far it goes.
void X11Events::drag(CGPoint location) {
  for (const double ahead : {4.0, 8.0, 12.0, 16.0, 12.0, 8.0, 4.0}) {
    fake(XCB_MOTION_NOTIFY, 0, {location.x + ahead, location.y});
  }
  fake(XCB_MOTION_NOTIFY, 0, location);
}

void X11Events::fake(std::uint8_t type, std::uint8_t detail, CGPoint location) {
  xcb_test_fake_input(connection_.raw(), type, detail, XCB_CURRENT_TIME, connection_.root(), coordinate(location.x),
                      coordinate(location.y), 0);
}

}  // namespace tallowin
