#pragma once

#include "base/settings.h"
#include "commands/driven/bounce_watch.h"
#include "commands/driven/dock_swipe_poster.h"
#include "commands/driven/symbolic_hot_key_poster.h"
#include "core/space.h"
#include "platform/accessibility.h"
#include "platform/displays.h"
#include "platform/driven_services.h"

namespace tallowin {

/// Switches Spaces by driving the Dock as a user would: by a swipe gesture (`instant`) or by the Mission Control
/// shortcuts (`classic`). Main thread only.
class SpaceDriver {
 public:
  struct Services {
    DrivenServices& driven;
    Events& events;
    Displays& displays;
    Preferences& preferences;
    System& system;
    MainQueue& mainQueue;
    const Clock& clock;
    const Settings& settings;
    Log& log;
  };

  explicit SpaceDriver(Services services);

  /// Whether this program may post events. The system may ask the user to allow it, without waiting for the answer.
  bool mayDrive();

  /// Switches a display from its active Space to another of its Spaces. False when nothing could be posted.
  bool drive(const std::string& displayID, const Space& active, const Space& target);

  /// To be called with every new snapshot, so that instant switches that bounce back are noticed.
  void observe(const SpaceSnapshot& snapshot) { bounces_.observe(snapshot); }

 private:
  [[nodiscard]] bool switchesClassically() const;
  bool classicSwitch(const Space& target, std::int64_t steps);
  void bringPointerTo(const std::string& displayID);

  const Services services_;
  DockSwipePoster swipes_;
  SymbolicHotKeyPoster hotKeys_;
  BounceWatch bounces_;
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
