#include "commands/driven/symbolic_hot_key_poster.h"

#include <string>

namespace tallowin {

namespace {

constexpr auto symbolicHotKeyPosterCategory = "Switcher";
constexpr auto restoreDelay = std::chrono::milliseconds(1500);

}  // namespace

SymbolicHotKeyPoster::~SymbolicHotKeyPoster() {
  restoreHotKeys();
}

bool SymbolicHotKeyPoster::postSymbolicHotKey(int hotKey) {
  const auto binding = services_.windowServer.CGSBridgeGetSymbolicHotKey(hotKey);
  if (!binding) {
    services_.log.error(symbolicHotKeyPosterCategory, "no key binding for symbolic hot key " + std::to_string(hotKey));
    return false;
  }
  if (!services_.windowServer.CGSBridgeIsSymbolicHotKeyEnabled(hotKey) && !enable(hotKey)) {
    return false;
  }
  if (!forceEnabledHotKeys_.empty()) {
    scheduleHotKeyRestore();
  }
  auto& events = services_.events;
  const auto down = events.CGEventCreateKeyboardEvent(binding->keyCode, true);
  const auto up = events.CGEventCreateKeyboardEvent(binding->keyCode, false);
  if (down == nullptr || up == nullptr) {
    return false;
  }
  events.CGEventSetFlags(*down, binding->modifierFlags);
  events.CGEventSetFlags(*up, 0);
  events.CGEventPost(CGEventTap::hid, *down);
  events.CGEventPost(CGEventTap::hid, *up);
  return true;
}

bool SymbolicHotKeyPoster::enable(int hotKey) {
  if (!services_.windowServer.CGSBridgeSetSymbolicHotKeyEnabled(hotKey, true)) {
    return false;
  }
  forceEnabledHotKeys_.insert(hotKey);
  return true;
}

void SymbolicHotKeyPoster::scheduleHotKeyRestore() {
  restoreWork_ = services_.mainQueue.after(restoreDelay, [this] { restoreHotKeys(); });
}

void SymbolicHotKeyPoster::restoreHotKeys() {
  for (const int hotKey : std::exchange(forceEnabledHotKeys_, {})) {
    services_.windowServer.CGSBridgeSetSymbolicHotKeyEnabled(hotKey, false);
  }
}

}  // namespace tallowin
