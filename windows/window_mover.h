#pragma once

#include <expected>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "base/desktop_texts.h"
#include "commands/space_switcher.h"
#include "core/space.h"
#include "platform/accessibility.h"
#include "platform/events.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/system.h"
#include "platform/window_list.h"
#include "platform/window_server.h"
#include "platform/workspace.h"
#include "windows/ax.h"
#include "windows/delayed_steps.h"
#include "windows/front_window.h"
#include "windows/window_drag.h"
#include "windows/window_info.h"

namespace tallowin {

/// Moves windows to other Spaces and reports whether they really got there. It asks the window server first; where that
/// does nothing, and the caller allows it, it drags the window over as a user would. Main thread only. When the mover
/// is destroyed, moves under way end without completing.
class WindowMover {
 public:
  /// Why a window was not moved, in the order in which it is found out.
  enum class Failure { noWindow, fullscreenWindow, fullscreenTarget, sameSpace, notMoved };

  using Result = std::expected<void, Failure>;
  /// Runs at most once, on the main thread; inside the call if the window server need not be asked to move anything.
  using Completion = std::function<void(Result)>;

  struct Services {
    SpaceSwitcher& switcher;
    WindowServer& windowServer;
    WindowList& windowList;
    Workspace& workspace;
    Accessibility& accessibility;
    Events& events;
    System& system;
    MainQueue& mainQueue;
    Log& log;
  };

  explicit WindowMover(Services services);
  WindowMover(const WindowMover&) = delete;
  WindowMover& operator=(const WindowMover&) = delete;

  /// The window that the user is working in: the focused window of the frontmost application, else the frontmost
  /// ordinary window on screen of more than 60 points each way that this application (or any, if none is frontmost)
  /// owns. Nothing when there is none.
  [[nodiscard]] std::optional<FrontWindow> frontWindow() const;

  /// Moves a window to `target` and completes when that has been verified, after 0.12 seconds if the window server does
  /// it. With `follow` the target is then switched to and the window raised, which the completion does not wait for.
  /// With `allowDrag` the mouse is taken over for 0.67 seconds if nothing else helps; while one drag is under way a
  /// second one is not begun and fails with `notMoved`. `snapshot` must be recent and hold `target`.
  void move(const FrontWindow& window, const Space& target, const SpaceSnapshot& snapshot, bool follow, bool allowDrag,
            Completion completion);

  /// Moves a window, without dragging, to the active Space of its display (of the menu-bar display, if the window's
  /// Space is not in the snapshot) and raises it when it has arrived.
  void bringHere(const WindowInfo& window, const SpaceSnapshot& snapshot, Completion completion);

  /// Brings a window to the front and activates its application. Nothing happens without accessibility permission or if
  /// the application does not list the window, as for windows on Spaces that are not active.
  void raise(const FrontWindow& window);

  /// The same 0.25 seconds after a switch to `space`, where the window is, was begun: before, it may not be possible.
  /// Not if the window is elsewhere by then, or its display is known to show another Space; the user would be pulled
  /// away. The next call of this replaces one that still waits.
  void raiseAfterSwitch(const FrontWindow& window, ManagedSpaceID space);

  /// What raiseAfterSwitch() still waits for does not happen: something else is to be in front.
  void forgetRaise();

 private:
  struct Move;

  [[nodiscard]] std::optional<FrontWindow> focusedWindow(ProcessID pid) const;
  [[nodiscard]] std::vector<ManagedSpaceID> spaces(WindowNumber window) const;
  [[nodiscard]] bool isOn(WindowNumber window, ManagedSpaceID space) const;
  [[nodiscard]] Result objection(WindowNumber window, const Space& target, const SpaceSnapshot& snapshot) const;
  void verify(const Move& move);
  void follow(const Move& move);
  void raiseIfShown(const FrontWindow& window, ManagedSpaceID space);
  void drag(const Move& move);

  const Services services_;
  const AX ax_;
  WindowDrag drag_;
  DelayedSteps steps_;
  WorkItem raising_;
};

/// What the user of such a desktop is told of a failure.
[[nodiscard]] std::string_view description(WindowMover::Failure failure, const DesktopTexts& texts);

}  // namespace tallowin
