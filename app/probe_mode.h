#pragma once

#include <ostream>

#include "core/space_provider.h"
#include "platform/platform.h"

namespace tallowin {

/// `--probe`: prints the health of the window-server functions, the Spaces of every display and the permissions, as
/// lines. Answers the exit status, which is always success.
int runProbe(const Platform& platform, const SpaceProvider& provider, std::ostream& out);

}  // namespace tallowin
