#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>
#include <xcb/xcb.h>

#include "platform/global_hot_keys.h"
#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_keyboard.h"

namespace tallowin {

/// Passive grabs on the root window. A combination is grabbed four times, with CapsLock and NumLock each on and off,
/// and follows its key when the keyboard's layout changes. Command is the modifier of the left Super key, Option that
/// of left Alt. A key that is held down counts once. While another program holds the keyboard, as several window
/// managers do while they move a window, nothing arrives. Main thread only; may be destroyed before its subscriptions.
class X11GlobalHotKeys : public GlobalHotKeys {
 public:
  explicit X11GlobalHotKeys(X11Connection& connection) : connection_(connection) {}
  ~X11GlobalHotKeys() override;
  X11GlobalHotKeys(const X11GlobalHotKeys&) = delete;
  X11GlobalHotKeys& operator=(const X11GlobalHotKeys&) = delete;

  std::optional<Subscription> registerHotKey(VirtualKeyCode keyCode, std::uint64_t modifierFlags,
                                             std::function<void()> pressed) override;

  /// Takes an event of the server.
  void handle(const xcb_generic_event_t& event);

 private:
  struct Keyboard;
  /// What is grabbed for a combination.
  struct Grab {
    std::uint8_t keycode = 0;
    std::uint16_t modifiers = 0;  ///< X11 modifier mask
    bool operator==(const Grab&) const = default;
  };
  struct HotKey {
    VirtualKeyCode keyCode = 0;
    std::uint64_t flags = 0;
    std::function<void()> pressed;
    std::optional<Grab> grab;  ///< nothing while the keyboard lacks the key or another program has it
    bool wanted = true;
  };

  Keyboard readKeyboard();
  [[nodiscard]] static std::optional<Grab> resolve(const Keyboard& keyboard, const HotKey& hotKey);
  bool grab(const Grab& grab);
  void ungrab(const Grab& grab);
  void end(HotKey& hotKey);
  void press(const xcb_key_press_event_t& event);
  void grabAnew();

  X11Connection& connection_;
  // Shared with an event that is being told, and held weakly by the subscriptions.
  std::vector<std::shared_ptr<HotKey>> hotKeys_;
  std::uint16_t numLock_ = 0;  ///< the modifier that NumLock is
  xcb_key_release_event_t lastRelease_{};
  // Held weakly by the subscriptions, to see whether this still exists.
  std::shared_ptr<X11GlobalHotKeys*> self_ = std::make_shared<X11GlobalHotKeys*>(this);
};

}  // namespace tallowin
