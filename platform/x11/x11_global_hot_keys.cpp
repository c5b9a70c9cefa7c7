#include "platform/x11/x11_global_hot_keys.h"

#include <X11/keysym.h>
#include <algorithm>
#include <set>
#include <utility>

#include "platform/events.h"

namespace tallowin {

namespace {

struct HotKeyModifier {
  std::uint64_t flag;
  Keysym keysym;
};

constexpr HotKeyModifier modifierKeys[] = {
    {CGEventFlag::command, XK_Super_L},
    {CGEventFlag::alternate, XK_Alt_L},
};

constexpr std::uint16_t everyModifier = 0xFF;

/// The locks that may be on or off: none, each, both.
std::set<std::uint16_t> lockStates(std::uint16_t numLock) {
  constexpr std::uint16_t capsLock = XCB_MOD_MASK_LOCK;
  return {0, capsLock, numLock, static_cast<std::uint16_t>(capsLock | numLock)};
}

}  // namespace

class X11GlobalHotKeys::Registration : public HotKey {
 public:
  Registration(const std::shared_ptr<X11GlobalHotKeys*>& owner, std::shared_ptr<Combination> combination)
      : owner_(owner), combination_(std::move(combination)) {}
  ~Registration() override {
    if (const auto owner = owner_.lock()) {
      (*owner)->end(*combination_);
    }
  }
  Registration(const Registration&) = delete;
  Registration& operator=(const Registration&) = delete;

  HotKeyState state() override {
    if (const auto owner = owner_.lock()) {
      (*owner)->settle(*combination_);
    }
    return combination_->state;
  }

 private:
  const std::weak_ptr<X11GlobalHotKeys*> owner_;
  const std::shared_ptr<Combination> combination_;
};

std::uint16_t X11GlobalHotKeys::Keyboard::modifierOf(Keysym keysym) const {
  const auto key = findKey(keys, keysym, 0);
  for (std::size_t i = 0; key && i < modifiers.size(); ++i) {
    if (std::ranges::find(modifiers[i], key->keycode) != modifiers[i].end()) {
      return static_cast<std::uint16_t>(1U << i);
    }
  }
  return 0;
}

X11GlobalHotKeys::~X11GlobalHotKeys() {
  for (const auto& combination : combinations_) {
    ungrab(*combination);
  }
  connection_.flush();
}

std::unique_ptr<HotKey> X11GlobalHotKeys::registerHotKey(VirtualKeyCode keyCode, std::uint64_t modifierFlags,
                                                         std::function<void()> pressed) {
  auto combination =
      std::make_shared<Combination>(Combination{keyCode, modifierFlags & CGEventFlag::modifiers, std::move(pressed)});
  combinations_.push_back(combination);
  grab(*combination);
  connection_.flush();
  return std::make_unique<Registration>(self_, std::move(combination));
}

void X11GlobalHotKeys::retry() {
  for (const auto& combination : combinations_) {
    settle(*combination);
    if (combination->state != HotKeyState::works) {
      grab(*combination);
    }
  }
  connection_.flush();
}

const X11GlobalHotKeys::Keyboard& X11GlobalHotKeys::keyboard() {
  if (!keyboard_) {
    const auto keysCookie = requestKeyMap(connection_);
    const auto modifiersCookie = xcb_get_modifier_mapping(connection_.raw());
    keyboard_ = {takeKeyMap(connection_, keysCookie), {}};
    if (const auto answer = connection_.reply(xcb_get_modifier_mapping_reply, modifiersCookie)) {
      const auto* keycodes = xcb_get_modifier_mapping_keycodes(answer.get());
      for (std::size_t i = 0; i < 8; ++i, keycodes += answer->keycodes_per_modifier) {
        keyboard_->modifiers.emplace_back(keycodes, keycodes + answer->keycodes_per_modifier);
      }
    }
    numLock_ = keyboard_->modifierOf(XK_Num_Lock);
  }
  return *keyboard_;
}

std::optional<X11GlobalHotKeys::Grab> X11GlobalHotKeys::resolve(const Combination& combination) {
  const auto key = findVirtualKey(keyboard().keys, combination.keyCode, 0);
  if (!key) {
    return std::nullopt;
  }
  Grab grab{key->keycode, 0};
  grab.modifiers |= (combination.flags & CGEventFlag::shift) != 0 ? XCB_MOD_MASK_SHIFT : 0;
  grab.modifiers |= (combination.flags & CGEventFlag::control) != 0 ? XCB_MOD_MASK_CONTROL : 0;
  for (const auto& [flag, modifierKey] : modifierKeys) {
    if ((combination.flags & flag) == 0) {
      continue;
    }
    const auto modifier = keyboard().modifierOf(modifierKey);
    if (modifier == 0) {
      return std::nullopt;
    }
    grab.modifiers |= modifier;
  }
  return grab;
}

/// Asks for the grabs without waiting for the answers.
void X11GlobalHotKeys::grab(Combination& combination) {
  combination.grab = resolve(combination);
  combination.state = combination.grab ? HotKeyState::works : HotKeyState::missingKey;
  for (const auto locks : combination.grab ? lockStates(numLock_) : std::set<std::uint16_t>()) {
    combination.unanswered.push_back(
        xcb_grab_key_checked(connection_.raw(), 1, connection_.root(), combination.grab->modifiers | locks,
                             combination.grab->keycode, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
  }
}

/// Waits for the answers. A combination that another program has in part is given up whole.
void X11GlobalHotKeys::settle(Combination& combination) {
  bool granted = true;
  for (const auto cookie : std::exchange(combination.unanswered, {})) {
    granted = connection_.succeeded(cookie) && granted;
  }
  if (!granted) {
    ungrab(combination);
    combination.state = HotKeyState::taken;
  }
}

void X11GlobalHotKeys::ungrab(Combination& combination) {
  const auto grab = std::exchange(combination.grab, std::nullopt);
  if (!grab || std::ranges::any_of(combinations_, [&](const auto& other) { return other->grab == grab; })) {
    return;
  }
  for (const auto locks : lockStates(numLock_)) {
    xcb_ungrab_key(connection_.raw(), grab->keycode, connection_.root(), grab->modifiers | locks);
  }
}

void X11GlobalHotKeys::end(Combination& combination) {
  combination.wanted = false;
  settle(combination);
  ungrab(combination);
  connection_.flush();
  std::erase_if(combinations_, [&](const auto& other) { return other.get() == &combination; });
}

void X11GlobalHotKeys::handle(const xcb_generic_event_t& event) {
  switch (event.response_type & 0x7F) {
    case XCB_KEY_RELEASE:
      lastRelease_ = reinterpret_cast<const xcb_key_release_event_t&>(event);
      break;
    case XCB_KEY_PRESS:
      press(reinterpret_cast<const xcb_key_press_event_t&>(event));
      break;
    case XCB_MAPPING_NOTIFY:
      keyboardChanged_ = true;
      break;
    default:
      break;
  }
}

void X11GlobalHotKeys::press(const xcb_key_press_event_t& event) {
  // A key that is held repeats as a release and a press of the same time.
  if (event.detail == lastRelease_.detail && event.time == lastRelease_.time) {
    return;
  }
  const auto locks = static_cast<std::uint16_t>(XCB_MOD_MASK_LOCK | numLock_);
  const Grab pressed{event.detail, static_cast<std::uint16_t>(event.state & everyModifier & ~locks)};
  const auto combinations = combinations_;
  for (const auto& combination : combinations) {
    if (combination->wanted && combination->grab == pressed) {
      combination->pressed();
    }
  }
}

void X11GlobalHotKeys::allHandled() {
  if (!std::exchange(keyboardChanged_, false)) {
    return;
  }
  for (const auto& combination : combinations_) {
    settle(*combination);
    ungrab(*combination);
  }
  keyboard_.reset();
  for (const auto& combination : combinations_) {
    grab(*combination);
  }
  connection_.flush();
}

}  // namespace tallowin
