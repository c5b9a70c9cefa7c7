#pragma once

#include "platform/platform.h"
#include "platform/simulated/simulated_desktop.h"
#include "platform/simulated/virtual_time.h"

namespace tallowin {

/// A simulated desktop in virtual time as the program sees it. `windowServer` and `preferences` stand on the same
/// desktop. Everything must outlive the answer.
[[nodiscard]] Platform simulatedPlatform(SimulatedDesktop& desktop, WindowServer& windowServer,
                                         Preferences& preferences, Images& images, VirtualTime& time);

}  // namespace tallowin
