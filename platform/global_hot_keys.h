#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "platform/identifiers.h"
#include "platform/subscription.h"

namespace tallowin {

/// Key combinations that reach this program whatever application is in front (RegisterEventHotKey). Main thread only.
class GlobalHotKeys {
 public:
  virtual ~GlobalHotKeys() = default;

  /// Runs `pressed` on the main thread for every press, whatever CapsLock and NumLock are, until the subscription is
  /// let go of. `modifierFlags` are CGEventFlags. Nothing when another program has the combination.
  virtual std::optional<Subscription> registerHotKey(VirtualKeyCode keyCode, std::uint64_t modifierFlags,
                                                     std::function<void()> pressed) = 0;
};

}  // namespace tallowin
