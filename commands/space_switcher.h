#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "base/settings.h"
#include "commands/bounce_watch.h"
#include "commands/dock_swipe_poster.h"
#include "commands/symbolic_hot_key_poster.h"
#include "core/space.h"
#include "platform/accessibility.h"
#include "platform/displays.h"

namespace tallowin {

/// Makes the system show another Space by driving the Dock as a user would: by a swipe gesture (`instant`) or by the
/// Mission Control shortcuts (`classic`). Main thread only.
class SpaceSwitcher {
 public:
  struct Services {
    WindowServer& windowServer;
    Accessibility& accessibility;
    Events& events;
    Displays& displays;
    Preferences& preferences;
    System& system;
    MainQueue& mainQueue;
    const Clock& clock;
    const Settings& settings;
    Log& log;
  };

  explicit SpaceSwitcher(Services services);

  /// Told just before a switch is posted, while the Space that is left is still shown.
  std::function<void(const SpaceSnapshot& snapshot)> willSwitch;

  /// Switches the display that holds `target` to it. True when it is active already or the switch was posted, which
  /// does not mean that it was seen to happen; false when nothing could be posted.
  bool switchTo(const Space& target, const SpaceSnapshot& snapshot);

  /// To be called with every new snapshot, so that instant switches that bounce back are noticed.
  void observe(const SpaceSnapshot& snapshot) { bounces_.observe(snapshot); }

  /// The display whose screen holds the pointer: the snapshot's only one, if it has no other; nothing when the pointer
  /// is on no screen or on one that the snapshot does not have.
  [[nodiscard]] std::optional<DisplaySpaces> displayUnderMouse(const SpaceSnapshot& snapshot) const;

 private:
  [[nodiscard]] bool switchesClassically() const;
  bool classicSwitch(const Space& target, std::int64_t steps);
  void bringPointerTo(const std::string& displayIdentifier);
  [[nodiscard]] CGPoint pointer() const;

  const Services services_;
  DockSwipePoster swipes_;
  SymbolicHotKeyPoster hotKeys_;
  BounceWatch bounces_;
};

}  // namespace tallowin
