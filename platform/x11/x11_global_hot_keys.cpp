#include "platform/x11/x11_global_hot_keys.h"

#include <X11/keysym.h>
#include <algorithm>
#include <array>
#include <set>

#include "platform/events.h"
#include "platform/x11/x11_keyboard.h"

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

/// The keyboard at one moment.
struct X11GlobalHotKeys::Keyboard {
  KeyMap keys;
  std::vector<std::vector<std::uint8_t>> modifiers;  ///< the keycodes of each of the eight modifiers

  /// The modifier that a keysym's key is; 0 when it is none.
  [[nodiscard]] std::uint16_t modifierOf(Keysym keysym) const {
    const auto key = findKey(keys, keysym, 0);
    for (std::size_t i = 0; key && i < modifiers.size(); ++i) {
      if (std::ranges::find(modifiers[i], key->keycode) != modifiers[i].end()) {
        return static_cast<std::uint16_t>(1U << i);
      }
    }
    return 0;
  }
};

X11GlobalHotKeys::~X11GlobalHotKeys() {
  for (const auto& hotKey : std::exchange(hotKeys_, {})) {
    if (hotKey->grab) {
      ungrab(*hotKey->grab);
    }
  }
  connection_.flush();
}

std::optional<Subscription> X11GlobalHotKeys::registerHotKey(VirtualKeyCode keyCode, std::uint64_t modifierFlags,
                                                             std::function<void()> pressed) {
  auto hotKey = std::make_shared<HotKey>();
  hotKey->keyCode = keyCode;
  hotKey->flags = modifierFlags & CGEventFlag::modifiers;
  hotKey->pressed = std::move(pressed);
  hotKey->grab = resolve(readKeyboard(), *hotKey);
  if (!hotKey->grab || !grab(*hotKey->grab)) {
    return std::nullopt;
  }
  hotKeys_.push_back(hotKey);
  return Subscription([self = std::weak_ptr(self_), weak = std::weak_ptr(hotKey)] {
    const auto owner = self.lock();
    const auto ended = weak.lock();
    if (owner != nullptr && ended != nullptr) {
      (*owner)->end(*ended);
    }
  });
}

X11GlobalHotKeys::Keyboard X11GlobalHotKeys::readKeyboard() {
  const auto keysCookie = requestKeyMap(connection_);
  const auto modifiersCookie = xcb_get_modifier_mapping(connection_.raw());
  Keyboard keyboard{takeKeyMap(connection_, keysCookie), {}};
  if (const auto answer = connection_.reply(xcb_get_modifier_mapping_reply, modifiersCookie)) {
    const auto* keycodes = xcb_get_modifier_mapping_keycodes(answer.get());
    for (std::size_t i = 0; i < 8; ++i, keycodes += answer->keycodes_per_modifier) {
      keyboard.modifiers.emplace_back(keycodes, keycodes + answer->keycodes_per_modifier);
    }
  }
  numLock_ = keyboard.modifierOf(XK_Num_Lock);
  return keyboard;
}

std::optional<X11GlobalHotKeys::Grab> X11GlobalHotKeys::resolve(const Keyboard& keyboard, const HotKey& hotKey) {
  const auto keysym = keysymFor(hotKey.keyCode);
  const auto key = keysym ? findKey(keyboard.keys, *keysym, 0) : std::nullopt;
  if (!key) {
    return std::nullopt;
  }
  Grab grab{key->keycode, 0};
  grab.modifiers |= (hotKey.flags & CGEventFlag::shift) != 0 ? XCB_MOD_MASK_SHIFT : 0;
  grab.modifiers |= (hotKey.flags & CGEventFlag::control) != 0 ? XCB_MOD_MASK_CONTROL : 0;
  for (const auto& [flag, modifierKey] : modifierKeys) {
    if ((hotKey.flags & flag) == 0) {
      continue;
    }
    const auto modifier = keyboard.modifierOf(modifierKey);
    if (modifier == 0) {
      return std::nullopt;
    }
    grab.modifiers |= modifier;
  }
  return grab;
}

bool X11GlobalHotKeys::grab(const Grab& grab) {
  std::vector<xcb_void_cookie_t> cookies;
  for (const auto locks : lockStates(numLock_)) {
    cookies.push_back(xcb_grab_key_checked(connection_.raw(), 1, connection_.root(), grab.modifiers | locks,
                                           grab.keycode, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
  }
  bool had = true;
  for (const auto cookie : cookies) {
    had = connection_.succeeded(cookie) && had;
  }
  if (!had) {
    ungrab(grab);
  }
  return had;
}

void X11GlobalHotKeys::ungrab(const Grab& grab) {
  const bool shared = std::ranges::any_of(hotKeys_, [&](const auto& other) { return other->grab == grab; });
  for (const auto locks : shared ? std::set<std::uint16_t>() : lockStates(numLock_)) {
    xcb_ungrab_key(connection_.raw(), grab.keycode, connection_.root(), grab.modifiers | locks);
  }
}

void X11GlobalHotKeys::end(HotKey& hotKey) {
  hotKey.wanted = false;
  const auto grab = hotKey.grab;
  std::erase_if(hotKeys_, [&](const auto& other) { return other.get() == &hotKey; });
  if (grab) {
    ungrab(*grab);
    connection_.flush();
  }
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
      if (!hotKeys_.empty()) {
        grabAnew();
      }
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
  const auto hotKeys = hotKeys_;
  for (const auto& hotKey : hotKeys) {
    if (hotKey->wanted && hotKey->grab == pressed) {
      hotKey->pressed();
    }
  }
}

void X11GlobalHotKeys::grabAnew() {
  const auto hotKeys = std::exchange(hotKeys_, {});
  for (const auto& hotKey : hotKeys) {
    if (hotKey->grab) {
      ungrab(*hotKey->grab);
    }
  }
  const auto keyboard = readKeyboard();
  for (const auto& hotKey : hotKeys) {
    hotKey->grab = resolve(keyboard, *hotKey);
    if (hotKey->grab && !grab(*hotKey->grab)) {
      hotKey->grab.reset();
    }
    hotKeys_.push_back(hotKey);
  }
}

}  // namespace tallowin
