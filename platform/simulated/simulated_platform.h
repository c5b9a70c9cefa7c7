#pragma once

#include "platform/platform.h"
#include "platform/simulated/simulated_desktop.h"
#include "platform/simulated/virtual_time.h"

namespace tallowin {

/// A simulated desktop in virtual time as the program sees it. All that is handed in stands on the same
/// desktop. Everything must outlive the answer.
[[nodiscard]] Platform simulatedPlatform(SimulatedDesktop& simulated, Desktop& desktop, DrivenServices& driven,
                                         Windows& windows, Preferences& preferences, Images& images, VirtualTime& time);

}  // namespace tallowin
