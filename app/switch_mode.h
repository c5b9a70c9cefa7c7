#pragma once

#include <cstdint>
#include <ostream>

#include "base/settings.h"
#include "core/space_provider.h"
#include "platform/platform.h"

namespace tallowin {

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

}  // namespace tallowin
