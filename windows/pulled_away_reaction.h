#pragma once

#include <functional>
#include <optional>

#include "core/space.h"
#include "platform/toasts.h"
#include "platform/workspace.h"
#include "windows/space_contents.h"
#include "windows/window_mover.h"

namespace tallowin {

/// Undoes that an application pulled the user to another Space: the user goes back, and the application's window comes
/// along. Main thread only.
class PulledAwayReaction {
 public:
  /// From posting the switch to opening an application there, which by then has happened.
  static constexpr Duration openingDelay = std::chrono::milliseconds(250);

  struct Services {
    WindowMover& mover;
    const SpaceContents& contents;
    Workspace& workspace;
    Toasts& toasts;
    MainQueue& mainQueue;
    std::function<void(const Space&)> switchTo;  ///< switches as this program's own doing
  };

  explicit PulledAwayReaction(Services services) : services_(std::move(services)) {}
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

  const Services services_;
  WorkItem opening_;
};

}  // namespace tallowin
