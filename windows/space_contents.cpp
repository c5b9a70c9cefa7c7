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
      services.windows.list(WindowScope::all),
      {ownPID, [&](ProcessID pid) { return services.workspace.runningApplicationWithProcessIdentifier(pid); },
       [&](WindowNumber window) { return services.desktop.spacesOfWindow(window); }});
}

}  // namespace

SpaceContents::SpaceContents(Services services)
    : services_(services),
      ownPID_(services.system.processIdentifier()),
      queue_(services.workQueues.make("tallowin.contents")) {}

void SpaceContents::start() {
  const bool isTold = services_.windows.observe([this, alive = std::weak_ptr(alive_)] {
    if (!alive.expired()) {
      changed();
    }
  });
  refresh();
  if (isTold) {
    return;
  }
  for (const auto trigger : triggers) {
    observers_.add(services_.workspaceNotifications.addObserver(trigger, [this](const Notification&) { refresh(); }));
  }
  timer_ = services_.mainQueue.every(period, periodTolerance, [this] { refresh(); });
}

void SpaceContents::changed() {
  refresh();
  if (onChange) {
    onChange();
  }
}

void SpaceContents::refresh() {
  if (std::exchange(pending_, true)) {
    return;
  }
  queue_->after(coalescing, [services = services_, ownPID = ownPID_, begun = begun_,
                             arrived = lifetime_.bound([this](SpaceContentsReading found, std::uint64_t number) {
                               pending_ = false;
                               publish(std::move(found), number);
                               reportNewWindows();
                             })] {
    const auto number = ++*begun;
    services.mainQueue.async(
        [arrived, number, found = reading(services, ownPID)]() mutable { arrived(std::move(found), number); });
  });
}

void SpaceContents::readNow() {
  const auto number = ++*begun_;
  publish(reading(services_, ownPID_), number);
}

/// A reading that was overtaken by one that began later is not published.
void SpaceContents::publish(SpaceContentsReading found, std::uint64_t number) {
  if (number < latest_) {
    return;
  }
  latest_ = number;
  if (found.appsBySpace != appsBySpace_.get()) {
    appsBySpace_.set(std::move(found.appsBySpace));
  }
  if (found.windows != windows_.get()) {
    windows_.set(std::move(found.windows));
  }
}

void SpaceContents::reportNewWindows() {
  const bool isFirst = std::exchange(firstPass_, false);
  std::vector<WindowInfo> unseen;
  std::ranges::copy_if(windows_.get(), std::back_inserter(unseen),
                       [this](const WindowInfo& window) { return seenWindowIDs_.insert(window.id).second; });
  if (!isFirst && !unseen.empty() && onNewWindows) {
    onNewWindows(unseen);
  }
}

std::vector<WindowInfo> SpaceContents::windows(ManagedSpaceID onManagedSpace) const {
  std::vector<WindowInfo> here;
  std::ranges::copy_if(windows_.get(), std::back_inserter(here),
                       [&](const WindowInfo& window) { return window.spaceID == onManagedSpace; });
  return here;
}

}  // namespace tallowin
