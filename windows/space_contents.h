#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "base/broadcaster.h"
#include "base/lifetime.h"
#include "base/subscriptions.h"
#include "core/space_state.h"
#include "platform/geometry.h"
#include "platform/identifiers.h"
#include "platform/pinned.h"
#include "platform/platform.h"

namespace tallowin {

/// The smallest window, in points each way, that may count as one.
inline constexpr double smallestWindow = 60;

/// An ordinary window of another application that stands on exactly one Space, as it was when it was read.
struct WindowInfo {
  WindowNumber id = 0;
  ProcessID pid = 0;                    ///< of the application that owns it
  std::optional<std::string> bundleID;  ///< of that application; absent if it has none
  std::string appName;
  std::string title;  ///< empty when the window has none
  CGRect frame;       ///< in screen coordinates, origin top left
  ManagedSpaceID spaceID = 0;
  bool operator==(const WindowInfo&) const = default;
};

/// An application with at least one window on a Space.
struct AppOnSpace {
  /// A negative value stands for an application that is not running.
  ProcessID pid = 0;
  std::optional<std::string> bundleID;
  std::string name;                     ///< as the first of the windows gave it
  std::vector<WindowNumber> windowIDs;  ///< on that Space, front to back
  bool operator==(const AppOnSpace&) const = default;

  /// The application's icon as PNG bytes: of the running application, or, if it does not run, of the one installed
  /// under the bundle identifier. Nothing when there is none. Main thread only; reads a file.
  [[nodiscard]] std::optional<std::string> icon(Workspace& workspace) const;
};

/// The applications on each Space that has any.
using AppsBySpace = std::map<ManagedSpaceID, std::vector<AppOnSpace>>;

/// What one look at the window list found.
struct SpaceContentsReading {
  AppsBySpace appsBySpace;
  std::vector<WindowInfo> windows;  ///< front to back
  bool operator==(const SpaceContentsReading&) const = default;
};

/// What must be known beyond the window list to read it.
struct SpaceContentsLookups {
  ProcessID ownPID = 0;  ///< this program's windows are left out
  std::function<std::optional<RunningApplication>(ProcessID)> runningApplication;
  /// The Spaces that show a window, where the list does not tell; nothing on failure.
  std::function<std::optional<std::vector<ManagedSpaceID>>(WindowNumber)> spacesForWindow;
};

/// What a list of all windows tells; nothing reads as empty. Any thread on which the lookups may be called.
[[nodiscard]] SpaceContentsReading readSpaceContents(const std::optional<std::vector<DesktopWindow>>& list,
                                                     const SpaceContentsLookups& lookups);

/// Knows which ordinary windows of other applications stand on which Space, and reports windows never seen before.
/// Windows on no Space, or on several, do not count. Main thread only; the window list is read on a queue of its own.
class SpaceContents : Pinned {
 public:
  explicit SpaceContents(const Platform& services);

  /// Told of windows that no earlier reading had, front to back, after they have been published. Windows that the first
  /// reading finds are not new, and no number is reported twice, not even one that was closed and given out again.
  std::function<void(const std::vector<WindowInfo>&)> onNewWindows;

  /// Told as soon as the desktop tells that windows have changed, before they are read. Not where it does not tell.
  std::function<void()> onChange;

  /// Asks for a first reading, and from now on for one whenever windows change; where the desktop does not tell that,
  /// whenever applications come, go or are activated, when the active Space changes, and every 4 seconds. Call once.
  void start();

  /// To be called with every new snapshot: windows have not changed when the Spaces that show them have. Where there is
  /// a reading every few seconds nothing is done.
  void spacesChanged();

  /// Asks for a new reading, which is made 0.15 seconds from now and published after that. Cheap: calls until then are
  /// answered by the same reading.
  void refresh();

  /// Reads and publishes at once: for what the user asks to be done to the windows as they are now. New windows are
  /// reported only by the next reading that was asked for otherwise.
  void readNow();

  /// The applications on each Space, by the position of their frontmost window; Spaces without windows have no entry.
  /// Empty until the first reading. Told of real changes only.
  [[nodiscard]] Published<AppsBySpace>& appsBySpace() { return appsBySpace_; }
  [[nodiscard]] const Published<AppsBySpace>& appsBySpace() const { return appsBySpace_; }

  /// The published applications on one Space.
  [[nodiscard]] std::vector<AppOnSpace> apps(ManagedSpaceID onManagedSpace) const;

  /// Every window on every Space, front to back. Empty until the first reading. Told of real changes only, after
  /// appsBySpace().
  [[nodiscard]] Published<std::vector<WindowInfo>>& windows() { return windows_; }
  [[nodiscard]] const Published<std::vector<WindowInfo>>& windows() const { return windows_; }

  /// The published windows on one Space, front to back.
  [[nodiscard]] std::vector<WindowInfo> windows(ManagedSpaceID onManagedSpace) const;

  /// Whether a reading has been published. Until then everything is empty because nothing is known.
  [[nodiscard]] bool published() const { return latest_ != 0; }

 private:
  void changed();
  void publish(SpaceContentsReading found, std::uint64_t number);
  void reportNewWindows();

  const Platform& services_;
  const ProcessID ownPID_;
  Published<AppsBySpace> appsBySpace_;
  Published<std::vector<WindowInfo>> windows_;
  std::unordered_set<WindowNumber> seenWindowIDs_;
  bool isTold_ = false;       ///< of changes, by the desktop
  bool firstPass_ = true;     ///< new windows have not been looked for yet
  std::uint64_t latest_ = 0;  ///< the number of the reading that is published
  bool pending_ = false;
  Subscriptions observers_;
  WorkItem timer_;
  Lifetime lifetime_;
  // How many readings have begun, which numbers them. Shared with the queue, on which they may begin.
  std::shared_ptr<std::atomic<std::uint64_t>> begun_ = std::make_shared<std::atomic<std::uint64_t>>(0);
  // Goes first: its destructor waits for the reading that is running.
  const std::unique_ptr<WorkQueue> queue_;
};

/// The names of the applications on a Space, as the contents have them last. They must outlive the answer.
[[nodiscard]] AppNames appNames(const SpaceContents& contents);

}  // namespace tallowin

template <>
struct std::hash<tallowin::WindowInfo> {
  std::size_t operator()(const tallowin::WindowInfo& window) const noexcept;
};

template <>
struct std::hash<tallowin::AppOnSpace> {
  std::size_t operator()(const tallowin::AppOnSpace& application) const noexcept;
};
