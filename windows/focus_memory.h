#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "base/settings.h"
#include "core/space.h"
#include "platform/system.h"
#include "platform/workspace.h"
#include "windows/space_contents.h"
#include "windows/window_mover.h"

namespace tallowin {

/// Remembers which window of each Space had the focus, and gives it back on return. In memory only. Main thread only.
class FocusMemory {
 public:
  /// From entering a Space to giving the focus back: the system chooses a window of its own first.
  static constexpr Duration delay = std::chrono::milliseconds(200);

  struct Services {
    Workspace& workspace;
    Desktop& desktop;
    Windows& windows;
    System& system;
    WindowMover& mover;
    const Settings& settings;
    MainQueue& mainQueue;
  };

  explicit FocusMemory(Services services) : services_(services) {}
  FocusMemory(const FocusMemory&) = delete;
  FocusMemory& operator=(const FocusMemory&) = delete;

  /// To be called before the Space is left: notes the focused window, unless it is one of this program's own.
  void leaving(const Space& space);

  /// To be called after the Space was entered. While the setting "restoreFocus" is on, the remembered window is raised
  /// 0.2 seconds from now, unless it is gone, a window of the Space has the focus by then, or the Space is no longer
  /// shown: raising would bring back a Space that the user only passed. Whatever an earlier call is still waiting for
  /// is given up. `contents` must outlive this object.
  void entered(const Space& space, const SpaceContents& contents);

  /// The window that would be raised on entering a Space, by Space::id.
  [[nodiscard]] std::optional<WindowRef> lastWindow(const std::string& spaceID) const;

 private:
  void restore(const Space& space, const SpaceContents& contents);
  [[nodiscard]] bool focusIsOn(ManagedSpaceID space) const;
  [[nodiscard]] bool focusIsAmong(const std::vector<WindowInfo>& windows) const;

  const Services services_;
  std::map<std::string, WindowRef> lastWindow_;
  WorkItem waiting_;
};

}  // namespace tallowin
