#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/events.h"

namespace tallowin {

/// A key combination that users write as text, such as "cmd+shift+1".
struct Keystroke {
  VirtualKeyCode keyCode = 0;
  std::uint64_t flags = 0;  ///< CGEventFlag
  bool operator==(const Keystroke&) const = default;

  /// Reads modifiers and a key in any case and order, joined by "+". Of several keys the last one counts. Nothing when
  /// there is none, or the last one is not known; an empty part is a key that is not known.
  [[nodiscard]] static std::optional<Keystroke> parse(std::string_view text);

  /// Presses the key combination and releases it as if by hand; does nothing for a text that is none. Main thread only.
  static void send(std::string_view text, Events& events);
};

}  // namespace tallowin
