#include "core/desktop_name_mirror.h"

#include "base/unicode.h"

namespace tallowin {

DesktopNameMirror::DesktopNameMirror(Services services)
    : services_(services),
      snapshotObserver_(services.watcher.snapshot().observeWillChange([this](const SpaceSnapshot&) { publishSoon(); })),
      storeObserver_(services.store.observeWillChange([this] { publishSoon(); })) {}

void DesktopNameMirror::publishSoon() {
  // Both tell before they change. Several changes in a row become one.
  pending_ = services_.mainQueue.after(Duration::zero(), [this] { publish(); });
}

void DesktopNameMirror::publish() {
  const auto& snapshot = services_.watcher.snapshot().get();
  if (snapshot.displays.empty() || !services_.desktop.health().healthy()) {
    return;
  }
  auto now = names(snapshot);
  if (published_ != now) {
    services_.desktopNames.publish(now);
    published_ = std::move(now);
  }
}

DesktopNameMirror::Names DesktopNameMirror::names(const SpaceSnapshot& snapshot) const {
  Names names;
  for (const auto& space : snapshot.allSpaces()) {
    if (const auto name = space.isFullscreen ? std::nullopt : services_.store.meta(space.id).name) {
      names.emplace(space.managedID, printable(*name));
    }
  }
  return names;
}

}  // namespace tallowin
