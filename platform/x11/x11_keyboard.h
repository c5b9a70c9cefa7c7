#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "platform/events.h"
#include "platform/identifiers.h"
#include "platform/none/neutral.h"
#include "platform/x11/x11_connection.h"

namespace tallowin {

/// An X11 keysym (X Window System Protocol, appendix A).
using Keysym = std::uint32_t;

/// The keysym of the key that has this virtual key code on the ANSI keyboard; nothing for keys without one.
[[nodiscard]] std::optional<Keysym> keysymFor(VirtualKeyCode keyCode);

/// What the keys of the server's keyboard mean.
struct KeyMap {
  std::uint8_t firstKeycode = 8;
  std::size_t keysymsPerKeycode = 0;
  std::vector<Keysym> keysyms;  ///< a row for each keycode from the first on
};

/// A key and what must be held for it to give a keysym.
struct KeyPosition {
  std::uint8_t keycode = 0;
  bool shift = false;
  bool level3 = false;  ///< ISO_Level3_Shift, labelled AltGr
  bool operator==(const KeyPosition&) const = default;
};

/// Where a keysym is in the layout `group` (0 the first), with as little held as possible. A keysym that the layout
/// lacks is looked for in the other one, as shortcuts of Latin letters work in layouts without them. Nothing when no
/// key gives it.
[[nodiscard]] std::optional<KeyPosition> findKey(const KeyMap& map, Keysym keysym, unsigned group);

/// The key to press for a virtual key code: where its keysym is, else, for layouts that lack it, the key at its place.
/// Nothing for codes without a keysym.
[[nodiscard]] std::optional<KeyPosition> findVirtualKey(const KeyMap& map, VirtualKeyCode keyCode, unsigned group);

/// Asks for the keyboard's whole map.
[[nodiscard]] xcb_get_keyboard_mapping_cookie_t requestKeyMap(X11Connection& connection);

/// Waits for it. Empty when the server is gone.
[[nodiscard]] KeyMap takeKeyMap(X11Connection& connection, xcb_get_keyboard_mapping_cookie_t cookie);

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
