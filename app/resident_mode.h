#pragma once

#include <optional>
#include <ostream>
#include <string>

#include "base/settings.h"
#include "core/space_provider.h"
#include "platform/platform.h"

namespace tallowin {

/// Without a mode: the resident program, until the run loop is stopped. Answers the status that it was stopped with.
/// `url` is performed once everything has started.
int runResident(const Platform& platform, const Settings& settings, const SpaceProvider& provider,
                const std::optional<std::string>& url, std::ostream& error);

}  // namespace tallowin
