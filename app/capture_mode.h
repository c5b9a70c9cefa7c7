#pragma once

#include <ostream>

#include "core/space_provider.h"
#include "platform/platform.h"

namespace tallowin {

/// `--capture`: writes a preview image of every active Space into the thumbnails folder and prints their paths. Answers
/// the exit status: `failure` without a snapshot, else success.
int runCapture(const Platform& platform, const SpaceProvider& provider, std::ostream& out);

}  // namespace tallowin
