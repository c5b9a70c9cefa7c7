#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "core/program_services.h"
#include "platform/pinned.h"
#include "windows/space_contents.h"
#include "windows/window_mover.h"

namespace tallowin {

/// Notices when activating an application pulled the user to another Space, and undoes that: the user goes back, and
/// the application's window comes along. Main thread only.
class SpaceLock : Pinned {
 public:
  /// A change of the Space sooner than this after an activation was caused by it.
  static constexpr std::chrono::nanoseconds pullTime = std::chrono::milliseconds(700);

  /// From posting the switch to opening an application there, which by then has happened.
  static constexpr Duration openingDelay = std::chrono::milliseconds(250);

  /// `switchTo` switches as this program's own doing.
  SpaceLock(const ProgramServices& services, const SpaceContents& contents, WindowMover& mover,
            std::function<void(const Space&)> switchTo)
      : services_(services), contents_(contents), mover_(mover), switchTo_(std::move(switchTo)) {}

  /// Notes activations from now on. Call once.
  void start();

  /// To be called on every change of the active Space. Answers whether it is undone: only while the setting "spaceLock"
  /// is on, when another program was activated just before, the change was not this program's own, and both Spaces are
  /// on one display. Of the application's windows the first one on the Space that it pulled to comes back, else its
  /// first one anywhere; without a window the application is opened on the Space that was left.
  bool spaceChanged(const std::optional<Space>& from, const Space& to, bool initiatedByTallowin);

 private:
  struct Activation {
    ProcessID pid = 0;
    std::uint64_t at = 0;  ///< Clock::machAbsoluteTime(), which nobody sets back
  };

  [[nodiscard]] bool wasPulled() const;
  void goBack(const Space& left, const RunningApplication& application);
  [[nodiscard]] std::optional<WindowInfo> windowToBring(const Space& left, ProcessID pid,
                                                        const SpaceSnapshot& snapshot) const;
  void bring(const WindowInfo& window, const Space& left, const SpaceSnapshot& snapshot);
  void openHere(const RunningApplication& application);

  const ProgramServices& services_;
  const SpaceContents& contents_;
  WindowMover& mover_;
  const std::function<void(const Space&)> switchTo_;
  std::optional<Activation> lastActivation_;
  Subscription observer_;
  WorkItem opening_;
};

}  // namespace tallowin
