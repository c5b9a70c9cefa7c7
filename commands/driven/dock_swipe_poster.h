#pragma once

#include <cstdint>

#include "platform/clock.h"
#include "platform/events.h"
#include "platform/preferences.h"
#include "platform/system.h"

namespace tallowin {

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
