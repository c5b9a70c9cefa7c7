#pragma once

#include <cstdint>
#include <string>

#include "base/preferences.h"
#include "platform/clock.h"
#include "platform/events.h"
#include "platform/system.h"

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

/// Posts the gesture that a swipe over the trackpad makes, so that the Dock switches Spaces at once. Main thread only.
class DockSwipePoster {
 public:
  struct Services {
    Events& events;
    Preferences& preferences;
    System& system;
    const Clock& clock;
  };

  explicit DockSwipePoster(Services services);

  /// Posts one swipe for each step, to the right when `steps` is positive. False when nothing was to be posted or an
  /// event could not be made; swipes posted before that stay posted.
  bool postSwipe(std::int64_t steps);

  /// The same with the device's own report behind each event.
  bool postAugmentedSwipe(std::int64_t steps);

  /// Whether the Dock of this system takes only swipes with the device's report: that of every major version above 26.
  [[nodiscard]] bool requiresIOHIDPayload() const { return requiresIOHIDPayload_; }

  /// Whether the user scrolls naturally, by the system's preference now.
  [[nodiscard]] bool naturalScrollingEnabled() const;

 private:
  [[nodiscard]] CGEventPtr augmentedEvent(double sign, std::int64_t phase);
  [[nodiscard]] CGEventPtr withIOHIDPayload(const CGEvent& event, std::int64_t phase, double velocity);

  const Services services_;
  const bool requiresIOHIDPayload_;
};

}  // namespace tallowin
