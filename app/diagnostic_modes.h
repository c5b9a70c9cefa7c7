#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>
#include <vector>

#include "base/preferences.h"
#include "base/settings.h"
#include "core/space.h"
#include "core/space_provider.h"
#include "platform/platform.h"

namespace tallowin {

/// `--probe`: prints the health of the window-server functions, the Spaces of every display and the permissions, as
/// lines. Answers the exit status, which is always success.
int runProbe(const Platform& platform, const SpaceProvider& provider, std::ostream& out);

/// `--capture`: writes a preview image of every active Space into the thumbnails folder and prints their paths. Answers
/// the exit status: `failure` without a snapshot, else success.
int runCapture(const Platform& platform, const SpaceProvider& provider, std::ostream& out);

/// What to switch to, and how.
struct SwitchRequest {
  std::int64_t desktopNumber = 1;  ///< from 1
  bool classic = false;            ///< store "classic" as the switching method first
};

/// `--switch N [classic]`: switches to a desktop and prints what was seen of it over at most 3.7 seconds. Answers the
/// exit status: success when the desktop was seen to be active, `failure` without a snapshot or such a
/// desktop, `notObserved` when the switch was not seen. `error` receives what goes wrong beside the switch.
int runSwitch(const SwitchRequest& request, const Platform& platform, const SpaceProvider& provider,
              const Settings& settings, std::ostream& out, std::ostream& error);

/// What the program leaves behind at the end of a simulation, as a record for people and tests: the displays with their
/// Spaces ("snapshot", null when they cannot be had) and the preferences that are set.
[[nodiscard]] nlohmann::ordered_json endState(const std::optional<std::vector<DisplaySpaces>>& displays,
                                              Preferences& preferences);

}  // namespace tallowin
