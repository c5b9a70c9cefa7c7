#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/identifiers.h"

namespace tallowin {

/// How a key combination stands that this program has asked for.
enum class HotKeyState {
  works,
  taken,      ///< another program has it
  missingKey  ///< the keyboard has no such key or modifier
};

/// A key combination that is asked for as long as this object is kept, also while it does not work. May be let go of
/// inside the call that it makes, and after the hot keys that it came from. Main thread only.
class HotKey {
 public:
  virtual ~HotKey() = default;

  /// How it stands now. May wait for the display server.
  [[nodiscard]] virtual HotKeyState state() = 0;
};

/// Key combinations that reach this program whatever application is in front (RegisterEventHotKey). Main thread only.
class GlobalHotKeys {
 public:
  virtual ~GlobalHotKeys() = default;

  /// Runs `pressed` on the main thread once for every press, however long the key is held and whatever CapsLock and
  /// NumLock are. `modifierFlags` are CGEventFlags. What does not work is tried again when the keyboard changes.
  [[nodiscard]] virtual std::unique_ptr<HotKey> registerHotKey(VirtualKeyCode keyCode, std::uint64_t modifierFlags,
                                                               std::function<void()> pressed) = 0;

  /// Tries again those that do not work, as another program may have let go of one.
  virtual void retry() = 0;
};

}  // namespace tallowin
