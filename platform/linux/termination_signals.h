#pragma once

#include <functional>

#include "platform/descriptors.h"

namespace tallowin {

/// Runs `onSignal` on the main thread, with the signal's number, when the process is asked to end by SIGTERM, SIGINT or
/// SIGHUP, until the subscription is let go of. Threads that are started later do not take these signals.
[[nodiscard]] Subscription onTerminationSignal(Descriptors& descriptors, std::function<void(int signal)> onSignal);

}  // namespace tallowin
