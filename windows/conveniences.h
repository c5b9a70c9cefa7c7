#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "commands/outcome.h"
#include "core/program_services.h"
#include "platform/pinned.h"
#include "windows/space_contents.h"
#include "windows/window_mover.h"

namespace tallowin {

/// Sends new windows of an application to the Space that it is pinned to by the Space's automation (`pinnedApps`), each
/// window once. Main thread only.
class AppRules : Pinned {
 public:
  AppRules(const ProgramServices& services, WindowMover& mover) : services_(services), mover_(mover) {}

  /// Applies the rules to windows never seen before, while the setting "applyAppRules" is on. A move that fails is
  /// logged.
  void apply(const std::vector<WindowInfo>& newWindows, const SpaceSnapshot& snapshot);

 private:
  void move(const WindowInfo& window, const Space& space, const SpaceSnapshot& snapshot);

  const ProgramServices& services_;
  WindowMover& mover_;
  std::set<WindowNumber> placed_;  ///< windows that a rule was applied to, or that stood where it wants them
};

/// Remembers which window of each Space had the focus, and gives it back on return. In memory only. Main thread only.
class FocusMemory : Pinned {
 public:
  /// From entering a Space to giving the focus back: the system chooses a window of its own first.
  static constexpr Duration delay = std::chrono::milliseconds(200);

  FocusMemory(const ProgramServices& services, const SpaceContents& contents, WindowMover& mover)
      : services_(services), contents_(contents), mover_(mover) {}

  /// To be called before the Space is left: notes the focused window, unless it is one of this program's own.
  void leaving(const Space& space);

  /// To be called after the Space was entered. While the setting "restoreFocus" is on, the remembered window is raised
  /// 0.2 seconds from now, unless it is gone, a window of the Space has the focus by then, or the Space is no longer
  /// shown: raising would bring back a Space that the user only passed. Whatever an earlier call is still waiting for
  /// is given up.
  void entered(const Space& space);

  /// The window that would be raised on entering a Space, by Space::id.
  [[nodiscard]] std::optional<WindowRef> lastWindow(const std::string& spaceID) const;

 private:
  void restore(const Space& space);
  [[nodiscard]] bool focusIsOn(ManagedSpaceID space) const;
  [[nodiscard]] bool focusIsAmong(const std::vector<WindowInfo>& windows) const;

  const ProgramServices& services_;
  const SpaceContents& contents_;
  WindowMover& mover_;
  std::map<std::string, WindowRef> lastWindow_;
  WorkItem waiting_;
};

/// Shows one chosen application (setting "scratchpadApp") on the current Space, or hides it. Main thread only.
class Scratchpad {
 public:
  Scratchpad(const ProgramServices& services, const SpaceContents& contents, WindowMover& mover)
      : services_(services), contents_(contents), mover_(mover) {}

  /// Hides the application if it is the active one, and shows it otherwise: it is opened if it does not run, and its
  /// first window brought over if that stands on another Space than the active one of the menu-bar display. The
  /// user is told when no application is chosen.
  Outcome toggle(const SpaceSnapshot& snapshot);

 private:
  void bring(const std::string& bundleID, ProcessID anyProcess, const SpaceSnapshot& snapshot);

  const ProgramServices& services_;
  const SpaceContents& contents_;
  WindowMover& mover_;
};

/// Minimises every window of a Space, and undoes that. In memory only. Main thread only.
class SpaceMinimizer {
 public:
  explicit SpaceMinimizer(Windows& windows) : windows_(windows) {}

  /// Minimises the windows on a Space and answers how many; undo() brings back these and no others. Windows that cannot
  /// be reached, or are minimised already, do not count. When there were none, undo() does what it would have done.
  std::size_t minimizeAll(const Space& space, const SpaceContents& contents);

  /// Whether there is something to undo.
  [[nodiscard]] bool canUndo() const { return !lastMinimized_.empty(); }

  /// Brings back what minimizeAll() minimised last, as far as it still exists.
  void undo();

 private:
  Windows& windows_;
  std::vector<WindowRef> lastMinimized_;
};

/// Opens and activates the application with this bundle identifier, or as the configuration says. That it is not
/// installed or cannot be opened is logged under `category`; false when it is not installed. `log` must outlive the
/// opening. Main thread only.
bool openApplication(const std::string& bundleID, Workspace& workspace, Log& log, std::string_view category,
                     const OpenConfiguration& configuration = {});

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

  /// Told of the Space that the user was pulled away from and of the application that did it; of one that has ended
  /// since, only the process id is known. Takes the user and the application's window back, unless replaced: of its
  /// windows the first one on the Space that it pulled to, else its first one anywhere; without a window the
  /// application is opened on the Space that was left.
  std::function<void(const Space& left, const RunningApplication& application)> onPulledAway =
      [this](const Space& left, const RunningApplication& application) { goBack(left, application); };

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
