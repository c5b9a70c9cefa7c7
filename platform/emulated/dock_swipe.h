#pragma once

#include <cstdint>
#include <expected>
#include <string>

#include "platform/emulated/emulated_event.h"

namespace tallowin {

/// One event of a Dock swipe gesture, as read from its fields.
struct DockSwipe {
  enum class Phase { began = 1, changed = 2, ended = 4 };  // IOHIDEventTypes.h, gesture phase bits
  Phase phase = Phase::began;
  int direction = 1;       ///< +1 or -1, the sign of field 124
  bool augmented = false;  ///< it carries the device's own report behind its fields
};

/// Whether the event is a Dock-control event at all (field 55 = 30), well-formed or not.
[[nodiscard]] bool isDockControl(const EmulatedEvent& event);

/// Reads a horizontal Dock swipe. The error says what is wrong with it. A device report, where there is one, must be
/// 96 bytes long and agree with the fields that it repeats.
[[nodiscard]] std::expected<DockSwipe, std::string> readDockSwipe(const EmulatedEvent& event);

}  // namespace tallowin
