#pragma once

#include <ostream>

#include "app/launch_options.h"
#include "base/settings.h"
#include "core/space_provider.h"
#include "platform/platform.h"

namespace tallowin {

/// Without a mode: the resident program, until the run loop is stopped. Answers the status that it was stopped with.
int runResident(const Platform& platform, const Settings& settings, const SpaceProvider& provider,
                const LaunchOptions& options, std::ostream& error);

}  // namespace tallowin
