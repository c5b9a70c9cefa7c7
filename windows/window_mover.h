#pragma once

#include <expected>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "base/desktop_texts.h"
#include "commands/space_switcher.h"
#include "core/space.h"
#include "platform/pinned.h"
#include "platform/platform.h"
#include "windows/space_contents.h"

namespace tallowin {

/// A window that is to be moved or raised.
struct FrontWindow {
  WindowNumber id = 0;
  ProcessID pid = 0;  ///< of the application that owns it
  CGRect frame;       ///< in screen coordinates, origin top left
  bool operator==(const FrontWindow&) const = default;
};

/// The first ordinary window of a list of windows on screen, front to back, that `owner` (or anyone, if absent) owns
/// and that is wider and taller than 60 points.
[[nodiscard]] std::optional<FrontWindow> frontmostWindow(const std::optional<std::vector<DesktopWindow>>& list,
                                                         std::optional<ProcessID> owner);

class WindowDrag;

/// Moves windows to other Spaces and reports whether they really got there. It asks the desktop first; where that does
/// nothing, the desktop is driven, and the caller allows it, it drags the window over as a user would. Main thread
/// only. When the mover is destroyed, moves under way end without completing.
class WindowMover : Pinned {
 public:
  /// Why a window was not moved, in the order in which it is found out.
  enum class Failure { noWindow, fullscreenWindow, fullscreenTarget, sameSpace, notMoved };

  using Result = std::expected<void, Failure>;
  /// Runs at most once, on the main thread; inside the call if the desktop need not be asked to move anything.
  using Completion = std::function<void(Result)>;

  WindowMover(const Platform& services, SpaceSwitcher& switcher);
  ~WindowMover();

  /// The window that the user is working in: the focused window of the frontmost application, else the frontmost
  /// ordinary window on screen of more than 60 points each way that this application (or any, if none is frontmost)
  /// owns. Nothing when there is none.
  [[nodiscard]] std::optional<FrontWindow> frontWindow() const;

  /// Moves a window to `target` and completes when that has been verified: after 0.12 seconds, or sooner if
  /// windowsChanged() is called when it is there. Where the desktop is asked that begins anew as long as other windows
  /// have arrived meanwhile. With `follow` the target is then switched to and
  /// the window raised, which the completion does not wait for. With `allowDrag` the mouse is taken over for 0.67
  /// seconds if nothing else helps; while one drag is under way a second one is not begun and fails with `notMoved`.
  /// `snapshot` must be recent and hold `target`.
  void move(const FrontWindow& window, const Space& target, const SpaceSnapshot& snapshot, bool follow, bool allowDrag,
            Completion completion);

  /// Moves a window, without dragging, to the active Space of its display (of the menu-bar display, if the window's
  /// Space is not in the snapshot) and raises it when it has arrived.
  void bringHere(const WindowInfo& window, const SpaceSnapshot& snapshot, Completion completion);

  /// Brings a window to the front and activates its application. Nothing happens without accessibility permission or if
  /// the application does not list the window, as for windows on Spaces that are not active.
  void raise(const FrontWindow& window);

  /// The same 0.25 seconds after a switch to `space`, where the window is, was begun, as before it may not be possible;
  /// where the desktop can be asked, as soon as spacesChanged() shows the Space. Not if the window is elsewhere by
  /// then, or its display is known to show another Space; the user would be pulled away. The next call of this replaces
  /// one that still waits.
  void raiseAfterSwitch(const FrontWindow& window, ManagedSpaceID space);

  /// What raiseAfterSwitch() still waits for does not happen: something else is to be in front.
  void forgetRaise();

  /// To be called when windows have changed, where the desktop tells: moves are looked at at once.
  void windowsChanged();

  /// To be called with every new snapshot.
  void spacesChanged(const SpaceSnapshot& snapshot);

 private:
  /// A move that the desktop has been asked for.
  struct Move {
    FrontWindow window;
    Space target;
    SpaceSnapshot snapshot;
    bool follows = false;
    bool allowsDrag = false;
    Completion completion;
    std::size_t arrivalsSeen = 0;  ///< arrivals_ when this was last looked at
    WorkItem verification;
  };
  using Moves = std::list<Move>;

  /// A window that is to be raised when its Space is shown.
  struct Raise {
    FrontWindow window;
    ManagedSpaceID space = 0;
    WorkItem due;
  };

  [[nodiscard]] std::optional<FrontWindow> focusedWindow(ProcessID pid) const;
  [[nodiscard]] std::vector<ManagedSpaceID> spaces(WindowNumber window) const;
  [[nodiscard]] bool isOn(WindowNumber window, ManagedSpaceID space) const;
  [[nodiscard]] Result objection(WindowNumber window, const Space& target, const SpaceSnapshot& snapshot) const;
  void verify(Moves::iterator move);
  void arrived(const Move& move);
  void raiseIfShown();
  void drag(const Move& move);

  const Platform& services_;
  SpaceSwitcher& switcher_;
  const std::unique_ptr<WindowDrag> drag_;  ///< null where the desktop can be asked
  Moves moves_;                             ///< those under way
  std::size_t arrivals_ = 0;                ///< so many windows have arrived
  std::optional<Raise> raising_;
};

/// What the user of such a desktop is told of a failure.
[[nodiscard]] std::string_view description(WindowMover::Failure failure, const DesktopTexts& texts);

}  // namespace tallowin
