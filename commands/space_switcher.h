#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "base/settings.h"
#include "core/space.h"
#include "platform/clock.h"
#include "platform/desktop.h"
#include "platform/displays.h"
#include "platform/driven_services.h"
#include "platform/events.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/preferences.h"
#include "platform/system.h"

namespace tallowin {

class SpaceDriver;

/// Makes the system show another Space: by asking the desktop for it, or by driving the Dock as a user would. Main
/// thread only.
class SpaceSwitcher {
 public:
  struct Services {
    AskedDesktop* asked;     ///< the desktop, if it can be asked;
    DrivenServices* driven;  ///< else what it is driven by
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
  SpaceSwitcher(const SpaceSwitcher&) = delete;
  SpaceSwitcher& operator=(const SpaceSwitcher&) = delete;
  ~SpaceSwitcher();

  /// Told just before a switch is asked for, while the Space that is left is still shown.
  std::function<void(const SpaceSnapshot& snapshot)> willSwitch;

  /// Switches the display that holds `target` to it. True when it is active already or the switch was asked for or
  /// posted, which does not mean that it was seen to happen; false when that was not possible.
  bool switchTo(const Space& target, const SpaceSnapshot& snapshot);

  /// To be called with every new snapshot, so that driven switches that bounce back are noticed.
  void observe(const SpaceSnapshot& snapshot);

  /// The display whose screen holds the pointer: the snapshot's only one, if it has no other; nothing when the pointer
  /// is on no screen or on one that the snapshot does not have.
  [[nodiscard]] std::optional<DisplaySpaces> displayUnderMouse(const SpaceSnapshot& snapshot) const;

 private:
  AskedDesktop* const asked_;
  Events& events_;
  Displays& displays_;
  Log& log_;
  const std::unique_ptr<SpaceDriver> driver_;  ///< null where the desktop is asked
};

}  // namespace tallowin
