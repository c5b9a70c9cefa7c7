#pragma once

#include <ostream>

#include "base/settings.h"
#include "core/space_provider.h"
#include "platform/platform.h"

namespace tallowin {

/// Without a mode: the resident program, until the run loop is stopped. Answers the status that it was stopped with.
int runResident(const Platform& platform, const Settings& settings, const SpaceProvider& provider, std::ostream& error);

}  // namespace tallowin
