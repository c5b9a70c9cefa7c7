#pragma once

#include <ostream>

#include "core/space_provider.h"
#include "platform/platform.h"

namespace tallowin {

/// Without a mode: watches the Spaces until told to quit, and logs which desktop becomes active. Says on `error`
/// when there are none to watch. Answers the exit status that the run loop was stopped with.
int runResident(const Platform& platform, const SpaceProvider& provider, std::ostream& error);

}  // namespace tallowin
