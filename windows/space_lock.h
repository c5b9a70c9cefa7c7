#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "base/settings.h"
#include "core/space.h"
#include "platform/clock.h"
#include "platform/notification_center.h"
#include "platform/system.h"
#include "platform/workspace.h"

namespace tallowin {

/// Notices when activating an application pulled the user to another Space. Main thread only.
class SpaceLock {
 public:
  /// A change of the Space sooner than this after an activation was caused by it.
  static constexpr std::chrono::nanoseconds pullTime = std::chrono::milliseconds(700);

  struct Services {
    NotificationCenter& workspaceNotifications;
    Workspace& workspace;
    System& system;
    const Settings& settings;
    const Clock& clock;
  };

  explicit SpaceLock(Services services) : services_(services) {}
  SpaceLock(const SpaceLock&) = delete;
  SpaceLock& operator=(const SpaceLock&) = delete;

  /// Told of the Space that the user was pulled away from and of the application that did it; of one that has ended
  /// since, only the process id is known.
  std::function<void(const Space& left, const RunningApplication& application)> onPulledAway;

  /// Notes activations from now on. Call once.
  void start();

  /// To be called on every change of the active Space. Answers whether onPulledAway was called: only while the setting
  /// "spaceLock" is on, when another program was activated just before, the change was not this program's own, and both
  /// Spaces are on one display.
  bool spaceChanged(const std::optional<Space>& from, const Space& to, bool initiatedByTallowin);

 private:
  struct Activation {
    ProcessID pid = 0;
    std::uint64_t at = 0;  ///< Clock::machAbsoluteTime(), which nobody sets back
  };

  [[nodiscard]] bool wasPulled() const;

  const Services services_;
  std::optional<Activation> lastActivation_;
  Subscription observer_;
};

}  // namespace tallowin
