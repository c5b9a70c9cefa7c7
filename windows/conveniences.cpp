#include "windows/conveniences.h"

#include <algorithm>
#include <utility>

namespace tallowin {

namespace {

/// Which application's new windows belong on which Space, by bundle identifier. Where several Spaces pin an
/// application, the last one in the snapshot's order has it.
std::map<std::string, Space> appRules(const SpaceSnapshot& snapshot, const SpaceStore& store) {
  std::map<std::string, Space> rules;
  for (const auto& space : snapshot.allSpaces()) {
    for (const auto& bundleID : store.meta(space.id).automation.value_or(SpaceAutomation()).pinnedApps) {
      rules.insert_or_assign(bundleID, space);
    }
  }
  return rules;
}

constexpr auto scratchpadCategory = "Scratchpad";

bool isShown(const RunningApplication& application) {
  return application.isActive && !application.isHidden;
}

}  // namespace

void AppRules::apply(const std::vector<WindowInfo>& newWindows, const SpaceSnapshot& snapshot) {
  if (newWindows.empty() || !services_.settings.get(setting::applyAppRules)) {
    return;
  }
  const auto rules = appRules(snapshot, services_.store);
  for (const auto& window : newWindows) {
    const auto rule = window.bundleID ? rules.find(*window.bundleID) : rules.end();
    if (rule == rules.end() || !placed_.insert(window.id).second) {
      continue;
    }
    if (window.spaceID != rule->second.managedID) {
      move(window, rule->second, snapshot);
    }
  }
}

void AppRules::move(const WindowInfo& window, const Space& space, const SpaceSnapshot& snapshot) {
  mover_.move({window.id, window.pid, window.frame}, space, snapshot, false, false,
              [&log = services_.log, &texts = services_.texts()](WindowMover::Result result) {
                if (!result) {
                  log.error("AppRules", "rule move failed: " + std::string(description(result.error(), texts)));
                }
              });
}

void FocusMemory::leaving(const Space& space) {
  const auto front = services_.workspace.frontmostApplication();
  if (!front || front->pid == services_.system.processIdentifier()) {
    return;
  }
  if (const auto window = services_.windows.focused(front->pid)) {
    lastWindow_.insert_or_assign(space.id, WindowRef{*window, front->pid});
  }
}

void FocusMemory::entered(const Space& space) {
  waiting_.cancel();
  if (services_.settings.get(setting::restoreFocus)) {
    waiting_ = services_.mainQueue.after(delay, [this, space] { restore(space); });
  }
}

std::optional<WindowRef> FocusMemory::lastWindow(const std::string& spaceID) const {
  const auto found = lastWindow_.find(spaceID);
  return found != lastWindow_.end() ? std::optional(found->second) : std::nullopt;
}

void FocusMemory::restore(const Space& space) {
  const auto active = services_.desktop.activeSpace();
  if (active && *active != space.managedID) {
    return;
  }
  const auto remembered = lastWindow(space.id);
  const auto windows = contents_.windows(space.managedID);
  const auto window = std::ranges::find_if(windows, [&](const WindowInfo& candidate) {
    return remembered && candidate.id == remembered->id && candidate.pid == remembered->pid;
  });
  if (window != windows.end() && !focusIsAmong(windows) && !focusIsOn(space.managedID)) {
    mover_.raise({window->id, window->pid, window->frame});
  }
}

/// Whether the user works there in a window that came after the windows were listed.
bool FocusMemory::focusIsOn(ManagedSpaceID space) const {
  const auto front = services_.workspace.frontmostApplication();
  const auto focused = front ? services_.windows.focused(front->pid) : std::nullopt;
  const auto spaces = focused ? services_.desktop.spacesOfWindow(*focused) : std::nullopt;
  return spaces && std::ranges::find(*spaces, space) != spaces->end();
}

bool FocusMemory::focusIsAmong(const std::vector<WindowInfo>& windows) const {
  const auto front = services_.workspace.frontmostApplication();
  const bool hasWindowHere =
      front && std::ranges::any_of(windows, [&](const WindowInfo& window) { return window.pid == front->pid; });
  const auto focused = hasWindowHere ? services_.windows.focused(front->pid) : std::nullopt;
  return focused && std::ranges::any_of(windows, [&](const WindowInfo& window) { return window.id == *focused; });
}

Outcome Scratchpad::toggle(const SpaceSnapshot& snapshot) {
  const auto bundleID = services_.settings.get(setting::scratchpadApp);
  if (bundleID.empty()) {
    constexpr auto message = "Choose a scratchpad app in Settings > Windows";
    services_.toasts.show({message, std::nullopt, true});
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
  mover_.forgetRaise();
  const auto& windows = contents_.windows().get();
  const auto window = std::ranges::find(windows, std::optional(bundleID), &WindowInfo::bundleID);
  const auto pid = window != windows.end() ? window->pid : anyProcess;
  const auto show = [&workspace = services_.workspace, pid] {
    workspace.unhide(pid);
    workspace.activateWithOptions(pid);
  };
  const auto target = snapshot.activeSpace();
  if (window != windows.end() && target && window->spaceID != target->managedID) {
    mover_.bringHere(*window, snapshot, [show](WindowMover::Result /*result*/) { show(); });
  } else {
    show();
  }
}

std::size_t SpaceMinimizer::minimizeAll(const Space& space, const SpaceContents& contents) {
  std::vector<WindowRef> minimized;
  for (const auto& window : contents.windows(space.managedID)) {
    if (windows_.minimize({window.id, window.pid})) {
      minimized.push_back({window.id, window.pid});
    }
  }
  if (!minimized.empty()) {
    lastMinimized_ = minimized;
  }
  return minimized.size();
}

void SpaceMinimizer::undo() {
  for (const auto& window : std::exchange(lastMinimized_, {})) {
    windows_.unminimize(window);
  }
}

bool openApplication(const std::string& bundleID, Workspace& workspace, Log& log, std::string_view category,
                     const OpenConfiguration& configuration) {
  const auto application = workspace.URLForApplicationWithBundleIdentifier(bundleID);
  if (!application) {
    log.info(category, "no application " + bundleID + " to open");
    return false;
  }
  workspace.openApplicationAtURL(
      *application, configuration,
      [&log, category = std::string(category), bundleID](std::expected<void, std::string> opened) {
        if (!opened) {
          log.error(category, "cannot open " + bundleID + ": " + opened.error());
        }
      });
  return true;
}

void SpaceLock::start() {
  observer_ = services_.workspaceNotifications.addObserver(
      NotificationName::NSWorkspaceDidActivateApplicationNotification, [this](const Notification& notification) {
        if (notification.application) {
          lastActivation_ = Activation{*notification.application, services_.clock.machAbsoluteTime()};
        }
      });
}

bool SpaceLock::spaceChanged(const std::optional<Space>& from, const Space& to, bool initiatedByTallowin) {
  const bool concerned = !initiatedByTallowin && from && from->displayID == to.displayID;
  if (!concerned || !services_.settings.get(setting::spaceLock) || !wasPulled()) {
    return false;
  }
  RunningApplication ended;
  ended.pid = lastActivation_->pid;
  onPulledAway(*from, services_.workspace.runningApplicationWithProcessIdentifier(ended.pid).value_or(ended));
  return true;
}

bool SpaceLock::wasPulled() const {
  return lastActivation_ && lastActivation_->pid != services_.system.processIdentifier() &&
         std::chrono::nanoseconds(services_.clock.machAbsoluteTime() - lastActivation_->at) < pullTime;
}

void SpaceLock::goBack(const Space& left, const RunningApplication& application) {
  const auto& snapshot = services_.watcher.latest();
  const auto window = windowToBring(left, application.pid, snapshot);
  if (window && window->spaceID != left.managedID) {
    bring(*window, left, snapshot);
  }
  switchTo_(left);
  if (!window) {
    openHere(application);
  }
  services_.toasts.show({"Brought " + application.localizedName.value_or("the app") + " here", "lock"});
}

std::optional<WindowInfo> SpaceLock::windowToBring(const Space& left, ProcessID pid,
                                                   const SpaceSnapshot& snapshot) const {
  const auto display = snapshot.display(left);
  const auto active = display ? display->activeSpace() : std::nullopt;
  auto windows = contents_.windows().get();
  std::erase_if(windows, [&](const WindowInfo& window) { return window.pid != pid; });
  std::ranges::stable_partition(
      windows, [&](const WindowInfo& window) { return active && window.spaceID == active->managedID; });
  return windows.empty() ? std::nullopt : std::optional(windows.front());
}

/// The target is the Space that was left, not the active one, which is still the wrong one.
void SpaceLock::bring(const WindowInfo& window, const Space& left, const SpaceSnapshot& snapshot) {
  const FrontWindow moved{window.id, window.pid, window.frame};
  mover_.move(moved, left, snapshot, false, false, [&mover = mover_, moved](WindowMover::Result result) {
    if (result) {
      mover.raise(moved);
    }
  });
}

void SpaceLock::openHere(const RunningApplication& application) {
  if (!application.bundleIdentifier) {
    return;
  }
  opening_ = services_.mainQueue.after(openingDelay, [this, bundleID = *application.bundleIdentifier] {
    if (const auto path = services_.workspace.URLForApplicationWithBundleIdentifier(bundleID)) {
      services_.workspace.openApplicationAtURL(*path, OpenConfiguration(), [](const auto& /*opened*/) {});
    }
  });
}

}  // namespace tallowin
