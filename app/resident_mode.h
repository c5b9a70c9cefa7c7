#pragma once

#include <ostream>

#include "app/launch_options.h"
#include "base/settings.h"
#include "base/storage.h"
#include "core/space_provider.h"
#include "platform/platform.h"

namespace tallowin {

/// Without a mode: the resident program, until the run loop is stopped. Answers the status that it was stopped with.
/// What was accepted by then is in its files when it answers, if they can be written.
int runResident(const Platform& platform, Storage& storage, const Settings& settings, const SpaceProvider& provider,
                const LaunchOptions& options, std::ostream& error);

}  // namespace tallowin
