#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/delayed_steps.h"
#include "base/lifetime.h"
#include "commands/commands_under_way.h"
#include "core/program_services.h"
#include "platform/pinned.h"
#include "windows/space_contents.h"
#include "windows/window_layout.h"
#include "windows/window_mover.h"

namespace tallowin {

/// Counts how many of several moves succeed and tells the count once, when the last one has completed. Never inside the
/// call that starts the moves: with none to wait for, or none left, it is told by way of the main queue, so that
/// callers need not mind the difference. Main thread only.
class MoveTally {
 public:
  using Completion = std::function<void(std::size_t moved)>;

  explicit MoveTally(Completion completion);

  /// The completion to start one more move with.
  [[nodiscard]] WindowMover::Completion expect();

  /// To be called once, when every move has been started. Nothing is told before. When the mover drops moves that are
  /// under way, nothing ever is.
  void close(MainQueue& mainQueue);

 private:
  struct State {
    Completion completion;
    std::size_t pending = 0;
    std::size_t moved = 0;
    bool closed = false;
  };

  // Shared with the completions of the moves, which outlast this object.
  std::shared_ptr<State> state_;
};

/// Remembers which window stood where, for each set of displays, and puts windows back. Main thread only.
class LayoutManager : Pinned {
 public:
  static constexpr Duration autoSaveInterval = std::chrono::seconds(300);

  /// Told once how many windows were moved to another Space, after the last of the moves that were started; never
  /// inside the call, and not at all when the manager or the mover is destroyed before.
  using Completion = MoveTally::Completion;

  LayoutManager(const ProgramServices& services, SpaceContents& contents, WindowMover& mover);

  /// The key under which layouts are kept for the displays that are connected now.
  [[nodiscard]] std::string displaySetup(const SpaceSnapshot& snapshot) const;

  /// The present places of all windows on ordinary Spaces whose applications have a bundle identifier. Writes nothing.
  [[nodiscard]] WindowLayout capture(std::string_view name, const SpaceSnapshot& snapshot) const;

  /// Captures and writes, unless there is no window. The layout "auto" is written a second time as "auto-setup". A
  /// failure to write is logged.
  WindowLayout save(std::string_view name, const SpaceSnapshot& snapshot);

  /// The layout of this name for these displays (a displaySetup()), or nothing.
  [[nodiscard]] std::optional<WindowLayout> load(std::string_view name, std::string_view setup);

  /// Starts moving windows to where the layout has them, and sets the frames of those that can be reached at once.
  /// Entries whose application has no window, or whose Space does not exist, change nothing.
  void restore(const WindowLayout& layout, const SpaceSnapshot& snapshot, Completion completion);

  /// From now on saves "auto" every five minutes while the setting "autoSaveLayout" is on. A save that is due during a
  /// restore, or while somebody holds automatic saving, is made afterwards.
  void startAutoSave();

  /// Holds automatic saving until the subscription is let go of, as while windows are not where the user put them.
  [[nodiscard]] Subscription holdAutoSave();

  /// The user's command, of which the user is told: saves the layout "manual" for the displays that are connected.
  Outcome saveLayout(const SpaceSnapshot& snapshot);

  /// The same: puts windows back as "manual" has them, or "auto" if that was never saved for these displays.
  void restoreLayout(const SpaceSnapshot& snapshot, const CommandAnswer& answer);

  /// The same: gathers all windows on the display that stays when the others are unplugged.
  void eject(const SpaceSnapshot& snapshot, const CommandAnswer& answer);

  /// Saves "auto" and starts moving every window to the display that stays when the others are unplugged; where all
  /// monitors show one set of Spaces, to the monitor that stays, on the same Space.
  void ejectExternalDisplays(const SpaceSnapshot& snapshot, Completion completion);

 private:
  void place(const WindowInfo& window, const WindowLayout::Entry& entry, const Space& space,
             const SpaceSnapshot& snapshot, MoveTally& tally);
  void move(const WindowInfo& window, const Space& space, const SpaceSnapshot& snapshot, MoveTally& tally);
  void moveToHomeDisplay(const SpaceSnapshot& snapshot, MoveTally& tally);
  void moveToHomeMonitor(const std::vector<Monitor>& monitors, MoveTally& tally);
  [[nodiscard]] MoveTally tallyFor(Completion completion);
  void autoSave();

  const ProgramServices& services_;
  SpaceContents& contents_;
  WindowMover& mover_;
  LayoutFiles files_;
  DelayedSteps steps_;
  WorkItem autoSaveTimer_;
  int autoSaveHolds_ = 0;     ///< so many hold automatic saving
  bool autoSaveDue_ = false;  ///< a save was due meanwhile
  Lifetime lifetime_;
};

}  // namespace tallowin
