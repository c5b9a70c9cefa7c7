#pragma once

#include <set>

#include "platform/identifiers.h"
#include "platform/workspace.h"

namespace tallowin {

/// Hides the running applications with a Dock icon that are not among `kept`, but never this program (`own`) nor the
/// Finder. Main thread only.
void hideOtherApps(Workspace& workspace, const std::set<ProcessID>& kept, ProcessID own);

}  // namespace tallowin
