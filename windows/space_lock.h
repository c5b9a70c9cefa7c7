#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "base/settings.h"
#include "core/program_services.h"
#include "core/space.h"
#include "platform/clock.h"
#include "platform/notification_center.h"
#include "platform/system.h"
#include "platform/toasts.h"
#include "platform/workspace.h"
#include "windows/space_contents.h"
#include "windows/window_mover.h"

namespace tallowin {

/// Notices when activating an application pulled the user to another Space. Main thread only.
class SpaceLock {
 public:
  /// A change of the Space sooner than this after an activation was caused by it.
  static constexpr std::chrono::nanoseconds pullTime = std::chrono::milliseconds(700);

  explicit SpaceLock(const ProgramServices& services) : services_(services) {}
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

  const ProgramServices& services_;
  std::optional<Activation> lastActivation_;
  Subscription observer_;
};

/// Undoes that an application pulled the user to another Space: the user goes back, and the application's window comes
/// along. Main thread only.
class PulledAwayReaction {
 public:
  /// From posting the switch to opening an application there, which by then has happened.
  static constexpr Duration openingDelay = std::chrono::milliseconds(250);

  PulledAwayReaction(const ProgramServices& services, const SpaceContents& contents, WindowMover& mover,
                     std::function<void(const Space&)> switchTo)
      : services_(services), contents_(contents), mover_(mover), switchTo_(std::move(switchTo)) {}
  PulledAwayReaction(const PulledAwayReaction&) = delete;
  PulledAwayReaction& operator=(const PulledAwayReaction&) = delete;

  /// To be called as SpaceLock::onPulledAway, with a snapshot in which the user is where the application is. Of the
  /// application's windows the first one there is taken, else its first one anywhere; without a window the application
  /// is opened on the Space that was left.
  void pulledAway(const Space& left, const RunningApplication& application, const SpaceSnapshot& snapshot);

 private:
  [[nodiscard]] std::optional<WindowInfo> windowToBring(const Space& left, ProcessID pid,
                                                        const SpaceSnapshot& snapshot) const;
  void bring(const WindowInfo& window, const Space& left, const SpaceSnapshot& snapshot);
  void openHere(const RunningApplication& application);

  const ProgramServices& services_;
  const SpaceContents& contents_;
  WindowMover& mover_;
  std::function<void(const Space&)> switchTo_;
  WorkItem opening_;
};

}  // namespace tallowin
