#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "base/settings.h"
#include "core/space_store.h"
#include "windows/window_info.h"
#include "windows/window_mover.h"

namespace tallowin {

/// Which application's new windows belong on which Space, by bundle identifier.
using RulesByApplication = std::map<std::string, Space, std::less<>>;

/// The rules that the Spaces' automations (`pinnedApps`) make. Where several Spaces pin an application, the last one in
/// the snapshot's order has it.
[[nodiscard]] RulesByApplication appRules(const SpaceSnapshot& snapshot, const SpaceStore& store);

/// Sends new windows of an application to the Space that it is pinned to, each window once. Main thread only.
class AppRules {
 public:
  struct Services {
    const SpaceStore& store;
    WindowMover& mover;
    const Settings& settings;
    Log& log;
    const DesktopTexts& texts;
  };

  explicit AppRules(Services services) : services_(services) {}
  AppRules(const AppRules&) = delete;
  AppRules& operator=(const AppRules&) = delete;

  /// Applies the rules to windows never seen before, while the setting "applyAppRules" is on. A move that fails is
  /// logged.
  void apply(const std::vector<WindowInfo>& newWindows, const SpaceSnapshot& snapshot);

 private:
  void move(const WindowInfo& window, const Space& space, const SpaceSnapshot& snapshot);

  const Services services_;
  std::set<WindowNumber> placed_;  ///< windows that a rule was applied to, or that stood where it wants them
};

}  // namespace tallowin
