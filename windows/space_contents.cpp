#include "windows/space_contents.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "base/hashes.h"

namespace tallowin {

namespace {

constexpr double invisibleAlpha = 0.01;
constexpr auto namelessApplication = "App";

bool mayCount(const DesktopWindow& window, ProcessID ownPID) {
  return window.layer == 0 && window.pid != ownPID && window.frame.size.width >= smallestWindow &&
         window.frame.size.height >= smallestWindow && window.alpha > invisibleAlpha;
}

/// The window as one that counts, unless it does not. The costly questions come last.
std::optional<WindowInfo> readWindow(const DesktopWindow& window, const SpaceContentsLookups& lookups) {
  if (!mayCount(window, lookups.ownPID)) {
    return {};
  }
  const auto application = lookups.runningApplication(window.pid);
  if (!application || application->activationPolicy != ActivationPolicy::regular) {
    return {};
  }
  const auto spaces = window.spaces ? window.spaces : lookups.spacesForWindow(window.id);
  if (!spaces || spaces->size() != 1) {
    return {};
  }
  return WindowInfo{window.id,
                    window.pid,
                    application->bundleIdentifier,
                    application->localizedName.value_or(window.ownerName.value_or(namelessApplication)),
                    window.title.value_or(""),
                    window.frame,
                    spaces->front()};
}

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

SpaceContentsReading reading(const Platform& services, ProcessID ownPID) {
  return readSpaceContents(
      services.windows.list(WindowScope::all),
      {ownPID, [&](ProcessID pid) { return services.workspace.runningApplicationWithProcessIdentifier(pid); },
       [&](WindowNumber window) { return services.desktop.spacesOfWindow(window); }});
}

std::optional<std::string> iconOfBundle(Workspace& workspace, const std::optional<std::string>& bundle) {
  const auto application = bundle ? workspace.URLForApplicationWithBundleIdentifier(*bundle) : std::nullopt;
  return application ? workspace.iconForFile(*application) : std::nullopt;
}

}  // namespace

SpaceContentsReading readSpaceContents(const std::optional<std::vector<DesktopWindow>>& list,
                                       const SpaceContentsLookups& lookups) {
  SpaceContentsReading reading;
  for (const auto& entry : list.value_or(std::vector<DesktopWindow>())) {
    if (auto window = readWindow(entry, lookups)) {
      auto& applications = reading.appsBySpace[window->spaceID];
      auto owner = std::ranges::find(applications, window->pid, &AppOnSpace::pid);
      if (owner == applications.end()) {
        owner = applications.insert(owner, {window->pid, std::nullopt, window->appName, {}});
      }
      owner->windowIDs.push_back(window->id);
      reading.windows.push_back(*std::move(window));
    }
  }
  for (auto& [space, applications] : reading.appsBySpace) {
    for (auto& application : applications) {  // bundle identifiers as they are by now
      const auto running = lookups.runningApplication(application.pid);
      application.bundleID = running ? running->bundleIdentifier : std::nullopt;
    }
  }
  return reading;
}

SpaceContents::SpaceContents(const Platform& services)
    : services_(services),
      ownPID_(services.system.processIdentifier()),
      queue_(services.desktopQueues.make("tallowin.contents")) {}

void SpaceContents::start() {
  isTold_ = services_.windows.observe(lifetime_.bound([this] { changed(); }));
  refresh();
  if (isTold_) {
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

void SpaceContents::spacesChanged() {
  if (isTold_) {
    refresh();
  }
}

void SpaceContents::refresh() {
  if (std::exchange(pending_, true)) {
    return;
  }
  queue_->after(coalescing, [&services = services_, ownPID = ownPID_, begun = begun_,
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

std::vector<AppOnSpace> SpaceContents::apps(ManagedSpaceID onManagedSpace) const {
  const auto found = appsBySpace_.get().find(onManagedSpace);
  return found != appsBySpace_.get().end() ? found->second : std::vector<AppOnSpace>();
}

std::vector<WindowInfo> SpaceContents::windows(ManagedSpaceID onManagedSpace) const {
  std::vector<WindowInfo> here;
  std::ranges::copy_if(windows_.get(), std::back_inserter(here),
                       [&](const WindowInfo& window) { return window.spaceID == onManagedSpace; });
  return here;
}

AppNames appNames(const SpaceContents& contents) {
  return [&contents](const Space& space) {
    std::vector<std::string> names;
    std::ranges::transform(contents.apps(space.managedID), std::back_inserter(names), &AppOnSpace::name);
    return names;
  };
}

std::optional<std::string> AppOnSpace::icon(Workspace& workspace) const {
  if (pid < 0) {
    return iconOfBundle(workspace, bundleID);
  }
  const auto running = workspace.runningApplicationWithProcessIdentifier(pid);
  return running ? iconOfBundle(workspace, running->bundleIdentifier) : std::nullopt;
}

}  // namespace tallowin

std::size_t std::hash<tallowin::WindowInfo>::operator()(const tallowin::WindowInfo& window) const noexcept {
  const auto& [origin, size] = window.frame;
  return tallowin::combinedHash(window.id, window.pid, window.bundleID, window.appName, window.title, origin.x,
                                origin.y, size.width, size.height, window.spaceID);
}

std::size_t std::hash<tallowin::AppOnSpace>::operator()(const tallowin::AppOnSpace& application) const noexcept {
  return tallowin::combinedHash(application.pid, application.bundleID, application.name,
                                tallowin::hashOfAll(application.windowIDs));
}
