#pragma once

#include <cstdint>
#include <string>

namespace tallowin {

/// What a Dock swipe's device report repeats of its event.
struct SwipeReport {
  std::uint64_t timestamp = 0;  ///< in ticks
  std::int64_t phase = 0;       ///< 1 began, 2 changed, 4 ended (IOHIDEventTypes.h, gesture phase bits)
  double positionX = 0;         ///< field 125
  double positionY = 0;         ///< field 126
  double progress = 0;          ///< field 124
  double velocity = 0;          ///< field 129
};

/// A 16.16 fixed-point number (IOFixed): cut off toward zero, held within 32 bits. Not-a-number is 0.
[[nodiscard]] std::int32_t fixed(double value);

/// The 96 bytes of the device report (IOHIDEventQueueElement with a Dock-swipe and a velocity event) that newer systems
/// want behind a serialised Dock swipe. Little-endian.
[[nodiscard]] std::string iohidPayload(const SwipeReport& report);

}  // namespace tallowin
