#include "automation/other_apps.h"

namespace tallowin {

void hideOtherApps(Workspace& workspace, const std::set<ProcessID>& kept, ProcessID own) {
  for (const auto& application : workspace.runningApplications()) {
    const bool hides = application.activationPolicy == ActivationPolicy::regular && !kept.contains(application.pid) &&
                       application.pid != own && application.bundleIdentifier != "com.apple.finder";
    if (hides) {
      workspace.hide(application.pid);
    }
  }
}

}  // namespace tallowin
