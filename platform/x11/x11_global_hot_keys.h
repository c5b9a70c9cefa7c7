#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>
#include <xcb/xcb.h>

#include "platform/global_hot_keys.h"
#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_keyboard.h"

namespace tallowin {

/// Passive grabs on the root window. A combination is grabbed four times, with CapsLock and NumLock each on and off,
/// and follows its key when the keyboard's layout changes; a key that the layout lacks is taken at its place. Command
/// is the modifier of the left Super key, Option that of left Alt. While another program holds the keyboard, as several
/// window managers do while they move a window, nothing arrives. Main thread only; may be destroyed before its hot
/// keys.
class X11GlobalHotKeys : public GlobalHotKeys {
 public:
  explicit X11GlobalHotKeys(X11Connection& connection) : connection_(connection) {}
  ~X11GlobalHotKeys() override;
  X11GlobalHotKeys(const X11GlobalHotKeys&) = delete;
  X11GlobalHotKeys& operator=(const X11GlobalHotKeys&) = delete;

  std::unique_ptr<HotKey> registerHotKey(VirtualKeyCode keyCode, std::uint64_t modifierFlags,
                                         std::function<void()> pressed) override;
  void retry() override;

  /// Takes an event of the server.
  void handle(const xcb_generic_event_t& event);

  /// Follows a change of the keyboard, once for all events of it. To be called when a batch of events has been handled.
  void allHandled();

 private:
  class Registration;

  /// The keyboard at one moment.
  struct Keyboard {
    KeyMap keys;
    std::vector<std::vector<std::uint8_t>> modifiers;  ///< the keycodes of each of the eight modifiers

    /// The modifier that a keysym's key is; 0 when it is none.
    [[nodiscard]] std::uint16_t modifierOf(Keysym keysym) const;
  };
  /// What is grabbed for a combination.
  struct Grab {
    std::uint8_t keycode = 0;
    std::uint16_t modifiers = 0;  ///< X11 modifier mask
    bool operator==(const Grab&) const = default;
  };
  struct Combination {
    VirtualKeyCode keyCode = 0;
    std::uint64_t flags = 0;
    std::function<void()> pressed;
    std::optional<Grab> grab = {};                   ///< nothing while it does not work
    std::vector<xcb_void_cookie_t> unanswered = {};  ///< of the requests for the grab
    HotKeyState state = HotKeyState::missingKey;     ///< once these are answered
    bool wanted = true;
  };

  const Keyboard& keyboard();
  std::optional<Grab> resolve(const Combination& combination);
  void grab(Combination& combination);
  void settle(Combination& combination);
  void ungrab(Combination& combination);
  void end(Combination& combination);
  void press(const xcb_key_press_event_t& event);

  X11Connection& connection_;
  // Shared with an event that is being told, and with the registrations.
  std::vector<std::shared_ptr<Combination>> combinations_;
  std::optional<Keyboard> keyboard_;  ///< as last read; nothing when it has changed since
  bool keyboardChanged_ = false;
  std::uint16_t numLock_ = 0;  ///< the modifier that NumLock is
  xcb_key_release_event_t lastRelease_{};
  // Held weakly by the registrations, to see whether this still exists.
  std::shared_ptr<X11GlobalHotKeys*> self_ = std::make_shared<X11GlobalHotKeys*>(this);
};

}  // namespace tallowin
