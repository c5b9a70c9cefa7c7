#include "windows/space_contents.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace tallowin {

namespace {

using namespace std::chrono_literals;

constexpr Duration coalescing = 150ms;
constexpr Duration period = 4s;
constexpr Duration periodTolerance = 1s;

constexpr NotificationName triggers[] = {
    NotificationName::NSWorkspaceDidLaunchApplicationNotification,
    NotificationName::NSWorkspaceDidTerminateApplicationNotification,
    NotificationName::NSWorkspaceActiveSpaceDidChangeNotification,
    NotificationName::NSWorkspaceDidActivateApplicationNotification,
};

SpaceContentsReading reading(const SpaceContents::Services& services, ProcessID ownPID) {
  return readSpaceContents(
      services.windowList.CGWindowListCopyWindowInfo(CGWindowListOption::excludeDesktopElements, 0),
      {ownPID, [&](ProcessID pid) { return services.workspace.runningApplicationWithProcessIdentifier(pid); },
       [&](WindowNumber window) { return services.windowServer.CGSBridgeCopySpacesForWindow(window); }});
}

}  // namespace

SpaceContents::SpaceContents(Services services)
    : services_(services),
      ownPID_(services.system.processIdentifier()),
      queue_(services.workQueues.make("tallowin.contents")) {}

void SpaceContents::start() {
  refresh();
  for (const auto trigger : triggers) {
    observers_.push_back(
        services_.workspaceNotifications.addObserver(trigger, [this](const Notification&) { refresh(); }));
  }
  timer_ = services_.mainQueue.every(period, periodTolerance, [this] { refresh(); });
}

void SpaceContents::refresh() {
  if (std::exchange(pending_, true)) {
    return;
  }
  queue_->after(coalescing, [this, services = services_, ownPID = ownPID_, alive = std::weak_ptr(alive_)] {
    services.mainQueue.async([this, alive, found = reading(services, ownPID)]() mutable {
      if (!alive.expired()) {
        pending_ = false;
        publish(std::move(found));
      }
    });
  });
}

void SpaceContents::readNow() {
  publish(reading(services_, ownPID_));
}

void SpaceContents::publish(SpaceContentsReading found) {
  const bool isFirst = std::exchange(firstPass_, false);
  if (found.appsBySpace != appsBySpace_.get()) {
    appsBySpace_.set(std::move(found.appsBySpace));
  }
  const auto newWindows = takeNewWindows(found.windows);
  if (found.windows != windows_.get()) {
    windows_.set(std::move(found.windows));
  }
  if (!isFirst && !newWindows.empty() && onNewWindows) {
    onNewWindows(newWindows);
  }
}

std::vector<WindowInfo> SpaceContents::takeNewWindows(const std::vector<WindowInfo>& windows) {
  std::vector<WindowInfo> unseen;
  std::ranges::copy_if(windows, std::back_inserter(unseen),
                       [this](const WindowInfo& window) { return !seenWindowIDs_.contains(window.id); });
  for (const auto& window : unseen) {
    seenWindowIDs_.insert(window.id);
  }
  return unseen;
}

std::vector<WindowInfo> SpaceContents::windows(ManagedSpaceID onManagedSpace) const {
  std::vector<WindowInfo> here;
  std::ranges::copy_if(windows_.get(), std::back_inserter(here),
                       [&](const WindowInfo& window) { return window.spaceID == onManagedSpace; });
  return here;
}

}  // namespace tallowin
