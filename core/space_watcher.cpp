#include "core/space_watcher.h"

#include <string>

namespace tallowin {

namespace {

constexpr auto spaceWatcherCategory = "SpaceWatcher";
constexpr auto debounce = std::chrono::milliseconds(40);
constexpr auto spacesPreferences = "Library/Preferences/com.apple.spaces.plist";

}  // namespace

SpaceWatcher::SpaceWatcher(Services services)
    : services_(services),
      plistSource_(services.files, services.mainQueue, services.folders.home / spacesPreferences,
                   [this] { requestRefresh("plist"); }) {}

void SpaceWatcher::start() {
  if (std::exchange(started_, true)) {
    return;
  }
  observeDesktop();
  observeNotifications();
  plistSource_.start();
  refresh();
}

void SpaceWatcher::observeDesktop() {
  const bool complete =
      services_.desktop.observe(lifetime_.bound([this](const DesktopSign& sign) { requestRefresh(sign.reason); }));
  if (!complete) {
    services_.log.error(spaceWatcherCategory, "WindowServer notifications unavailable, relying on fallbacks");
  }
}

void SpaceWatcher::observeNotifications() {
  const auto observe = [this](NotificationCenter& center, NotificationName name) {
    observers_.add(center.addObserver(name, [this](const Notification&) { requestRefresh("workspace"); }));
  };
  observe(services_.workspaceNotifications, NotificationName::NSWorkspaceActiveSpaceDidChangeNotification);
  observe(services_.defaultNotifications, NotificationName::NSApplicationDidChangeScreenParametersNotification);
  // The wake notification belongs to the workspace's centre, but this program has always listened at the default one.
  observe(services_.defaultNotifications, NotificationName::NSWorkspaceDidWakeNotification);
}

void SpaceWatcher::requestRefresh(std::string_view reason) {
  services_.log.debug(spaceWatcherCategory, "refresh asked for by " + std::string(reason));
  pendingRefresh_ = services_.mainQueue.after(debounce, [this] { refresh(); });
}

void SpaceWatcher::refresh() {
  auto snapshot = services_.provider.snapshot();
  if (!snapshot || snapshot->displays == snapshot_.get().displays) {
    return;
  }
  const auto before = snapshot_.get().activeSpace();
  snapshot_.set(*snapshot);
  if (onSnapshot) {
    onSnapshot(*snapshot);
  }
  reportActiveSpace(before, *snapshot);
}

void SpaceWatcher::reportActiveSpace(const std::optional<Space>& before, const SpaceSnapshot& now) {
  const auto active = now.activeSpace();
  if (active && (!before || before->id != active->id) && onActiveSpaceChange) {
    onActiveSpaceChange(before, *active);
  }
}

}  // namespace tallowin
