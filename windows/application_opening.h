#pragma once

#include <string>
#include <string_view>

#include "platform/log.h"
#include "platform/workspace.h"

namespace tallowin {

/// Opens and activates the application with this bundle identifier, or as the configuration says. That it is not
/// installed or cannot be opened is logged under `category`; false when it is not installed. `log` must outlive the
/// opening. Main thread only.
bool openApplication(const std::string& bundleID, Workspace& workspace, Log& log, std::string_view category,
                     const OpenConfiguration& configuration = {});

}  // namespace tallowin
