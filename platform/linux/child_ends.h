#pragma once

#include <functional>

#include "platform/descriptors.h"

namespace tallowin {

/// Runs `onEnd` on the main thread after child processes of this process have ended, once for any number of them, until
/// the subscription is let go of. At most one at a time. Nothing when the system refuses. Main thread only.
[[nodiscard]] Subscription onChildEnds(Descriptors& descriptors, std::function<void()> onEnd);

}  // namespace tallowin
