#include "windows/scratchpad.h"

#include <algorithm>

#include "windows/application_opening.h"

namespace tallowin {

namespace {

constexpr auto category = "Scratchpad";

bool isShown(const RunningApplication& application) {
  return application.isActive && !application.isHidden;
}

}  // namespace

void Scratchpad::toggle(const SpaceSnapshot& snapshot, Toasts& toasts) {
  const auto bundleID = services_.settings.text("scratchpadApp");
  if (bundleID.empty()) {
    toasts.show({"Choose a scratchpad app in Settings > Windows", std::nullopt, true});
    return;
  }
  const auto running = services_.workspace.runningApplicationsWithBundleIdentifier(bundleID);
  const auto shown = std::ranges::find_if(running, isShown);
  if (running.empty()) {
    openApplication(bundleID, services_.workspace, services_.log, category);
  } else if (shown != running.end()) {
    services_.workspace.hide(shown->pid);
  } else {
    bring(bundleID, running.front().pid, snapshot);
  }
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
