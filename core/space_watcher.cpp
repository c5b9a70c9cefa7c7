#include "core/space_watcher.h"

#include <algorithm>
#include <string>

namespace tallowin {

namespace {

constexpr auto watcherCategory = "SpaceWatcher";
constexpr auto debounce = std::chrono::milliseconds(40);
constexpr auto spacesPreferences = "Library/Preferences/com.apple.spaces.plist";

/// Whether the Space that a display is said to show is one of its Spaces.
bool showsOneOfItsSpaces(const DesktopDisplay& display) {
  return display.current &&
         std::ranges::find(display.spaces, *display.current, &DesktopSpace::id) != display.spaces.end();
}

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
  if (services_.kind == DesktopKind::driven) {
    plistSource_.start();
  }
  refresh();
}

void SpaceWatcher::observeDesktop() {
  const bool complete = services_.desktop.observe(lifetime_.bound([this](const DesktopSign& sign) { signSeen(sign); }));
  if (!complete) {
    services_.log.error(watcherCategory, "WindowServer notifications unavailable, relying on fallbacks");
  }
}

void SpaceWatcher::observeNotifications() {
  const auto observe = [this](NotificationCenter& center, NotificationName name) {
    observers_.add(center.addObserver(name, [this](const Notification&) { requestRefresh("workspace"); }));
  };
  observe(services_.defaultNotifications, NotificationName::NSApplicationDidChangeScreenParametersNotification);
  if (services_.kind == DesktopKind::driven) {
    // A desktop that can be asked gives a sign of its own for these.
    observe(services_.workspaceNotifications, NotificationName::NSWorkspaceActiveSpaceDidChangeNotification);
    // It belongs to the workspace's centre, but this program has always listened at the default one.
    observe(services_.defaultNotifications, NotificationName::NSWorkspaceDidWakeNotification);
  }
}

/// The Space lock and the Dock guard tell by what comes soon after a change whether the user wanted it.
void SpaceWatcher::signSeen(const DesktopSign& sign) {
  const auto& settings = services_.settings;
  if (!sign.isExact || settings.get(setting::spaceLock) || settings.get(setting::dockClickProtection)) {
    requestRefresh(sign.reason);
  } else {
    pendingFollow_ = services_.mainQueue.after(Duration::zero(), [this] { follow(); });  // once for all of this turn
  }
}

void SpaceWatcher::follow() {
  const auto reading = services_.provider.read();
  if (reading && isSettled(*reading)) {
    take(*reading);
  } else {
    requestRefresh("the desktop is being rebuilt");
  }
}

/// Desktops that come or go, and window managers that start, say one thing after the other.
bool SpaceWatcher::isSettled(const DesktopReading& reading) const {
  const auto& known = snapshot_.get().displays;
  return reading.manager == manager_ && std::ranges::all_of(reading.displays, showsOneOfItsSpaces) &&
         std::ranges::equal(reading.displays, known, [](const DesktopDisplay& now, const DisplaySpaces& before) {
           return now.id == before.id && now.spaces.size() == before.spaces.size();
         });
}

void SpaceWatcher::requestRefresh(std::string_view reason) {
  services_.log.debug(watcherCategory, "refresh asked for by " + std::string(reason));
  pendingRefresh_ = services_.mainQueue.after(debounce, [this] { refresh(); });
}

void SpaceWatcher::refresh() {
  if (const auto reading = services_.provider.read()) {
    take(*reading);
  }
}

void SpaceWatcher::take(const DesktopReading& reading) {
  auto snapshot = services_.provider.snapshot(reading);
  if (snapshot) {
    manager_ = reading.manager;
  }
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
