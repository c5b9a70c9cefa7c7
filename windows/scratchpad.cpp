#include "windows/scratchpad.h"

#include <algorithm>

#include "windows/application_opening.h"

namespace tallowin {

namespace {

constexpr auto scratchpadCategory = "Scratchpad";

bool isShown(const RunningApplication& application) {
  return application.isActive && !application.isHidden;
}

}  // namespace

Outcome Scratchpad::toggle(const SpaceSnapshot& snapshot, Toasts& toasts) {
  const auto bundleID = services_.settings.get(setting::scratchpadApp);
  if (bundleID.empty()) {
    constexpr auto message = "Choose a scratchpad app in Settings > Windows";
    toasts.show({message, std::nullopt, true});
    return Outcome::refused(message);
  }
  const auto running = services_.workspace.runningApplicationsWithBundleIdentifier(bundleID);
  const auto shown = std::ranges::find_if(running, isShown);
  if (running.empty()) {
    return openApplication(bundleID, services_.workspace, services_.log, scratchpadCategory)
               ? Outcome::done()
               : Outcome::refused("The application " + bundleID + " is not installed");
  }
  if (shown != running.end()) {
    services_.workspace.hide(shown->pid);
  } else {
    bring(bundleID, running.front().pid, snapshot);
  }
  return Outcome::done();
}

void Scratchpad::bring(const std::string& bundleID, ProcessID anyProcess, const SpaceSnapshot& snapshot) {
  services_.mover.forgetRaise();
  const auto& windows = services_.contents.windows().get();
  const auto window = std::ranges::find(windows, std::optional(bundleID), &WindowInfo::bundleID);
  const auto pid = window != windows.end() ? window->pid : anyProcess;
  const auto show = [&workspace = services_.workspace, pid] {
    workspace.unhide(pid);
    workspace.activateWithOptions(pid);
  };
  const auto target = snapshot.activeSpace();
  if (window != windows.end() && target && window->spaceID != target->managedID) {
    services_.mover.bringHere(*window, snapshot, [show](WindowMover::Result /*result*/) { show(); });
  } else {
    show();
  }
}

}  // namespace tallowin
