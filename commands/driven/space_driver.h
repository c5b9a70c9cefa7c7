#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>

#include "base/settings.h"
#include "commands/driven/dock_swipe_poster.h"
#include "core/space.h"
#include "platform/platform.h"

namespace tallowin {

/// What switching Spaces needs.
struct SwitchServices : Platform {
  const Settings& settings;
};

/// Switches Spaces by driving the Dock as a user would: by a swipe gesture (`instant`) or by the Mission Control
/// shortcuts (`classic`). A shortcut that the user has switched off is switched on for the press, and off again 1.5 s
/// after the last press, or when this object goes. Main thread only.
class SpaceDriver {
 public:
  /// The desktop is driven.
  explicit SpaceDriver(const SwitchServices& services)
      : services_(services), swipes_({services.events, services.preferences, services.system, services.clock}) {}
  SpaceDriver(const SpaceDriver&) = delete;
  SpaceDriver& operator=(const SpaceDriver&) = delete;
  ~SpaceDriver() { restoreHotKeys(); }

  /// Whether this program may post events. The system may ask the user to allow it, without waiting for the answer.
  bool mayDrive();

  /// Switches a display from its active Space to another of its Spaces. False when nothing could be posted.
  bool drive(const std::string& displayID, const Space& active, const Space& target);

  /// To be called with every new snapshot: judges the last instant switch of each display. From the second one on that
  /// bounced back, which is when the Dock returned right after it to the Space it came from, all switches are classic.
  void observe(const SpaceSnapshot& snapshot);

 private:
  /// The last instant switch made on a display.
  struct GestureRecord {
    std::string originID;
    std::string targetID;
    std::uint64_t madeAt = 0;  ///< in ticks, so that a change of the wall clock does not matter
    bool armed = false;        ///< the display has been seen on the target
  };

  [[nodiscard]] bool switchesClassically() const;
  bool classicSwitch(const Space& target, std::int64_t steps);
  /// False when the hot key has no binding, cannot be switched on, or its events cannot be made.
  bool postSymbolicHotKey(int hotKey);
  bool enable(int hotKey);
  void scheduleHotKeyRestore();
  void restoreHotKeys();
  void bringPointerTo(const std::string& displayID);
  void countBounce();

  const SwitchServices services_;
  DockSwipePoster swipes_;
  std::set<int> forceEnabledHotKeys_;
  WorkItem restoreWork_;
  std::map<std::string, GestureRecord> gestureRecords_;  ///< by display identifier
  int bounceCount_ = 0;
  bool prefersClassicAfterBounces_ = false;
};

/// The Mission Control shortcut of a desktop.
struct DesktopHotKey {
  int hotKey = 0;  ///< its number in the system's table
  bool isBound = false;
  VirtualKeyCode keyCode = 0;
  std::uint64_t modifierFlags = 0;  ///< CGEventFlags
  bool isEnabled = false;
};

/// The shortcut of the desktop with this number; neither bound nor enabled where desktops are not driven.
[[nodiscard]] DesktopHotKey hotKeyOfDesktop(std::int64_t number, DrivenServices* driven);

}  // namespace tallowin
