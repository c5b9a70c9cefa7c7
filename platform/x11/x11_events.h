#pragma once

#include <cstdint>
#include <map>
#include <vector>
#include <xcb/xcb.h>

#include "platform/none/neutral.h"
#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_keyboard.h"

namespace tallowin {

/// Key presses through the XTEST extension; all else that events can do is neutral. A key goes to where the keyboard's
/// layout has it, with Command as the left Super key, Option as left Alt; its modifiers are held until its release is
/// posted. Without XTEST nothing is posted. Main thread only.
class X11Events : public NeutralEvents {
 public:
  explicit X11Events(X11Connection& connection) : connection_(connection) {}
  /// Releases what is still held.
  ~X11Events() override;
  X11Events(const X11Events&) = delete;
  X11Events& operator=(const X11Events&) = delete;

  CGEventPtr CGEventCreateKeyboardEvent(VirtualKeyCode keyCode, bool down) override;
  void CGEventSetFlags(CGEvent& event, std::uint64_t flags) override;
  void CGEventPost(CGEventTap tap, const CGEvent& event) override;

 private:
  void pressKey(VirtualKeyCode keyCode, std::uint64_t flags);
  void releaseKey(VirtualKeyCode keyCode);
  void fake(std::uint8_t type, std::uint8_t keycode);

  X11Connection& connection_;
  /// The keycodes that were pressed for each key that is held, in the order of pressing.
  std::map<VirtualKeyCode, std::vector<std::uint8_t>> held_;
};

}  // namespace tallowin
