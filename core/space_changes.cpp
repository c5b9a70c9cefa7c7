#include "core/space_changes.h"

#include "base/unicode.h"

namespace tallowin {

SpaceChanges::SpaceChanges(const ProgramServices& services) : mainQueue_(services.mainQueue) {
  // Both tell before they change.
  sources_.add(services.watcher.snapshot().observeWillChange([this](const SpaceSnapshot&) { tellSoon(); }));
  sources_.add(services.store.observeWillChange([this] { tellSoon(); }));
}

void SpaceChanges::tellSoon() {
  soon_ = mainQueue_.after(Duration::zero(), [this] { tell(); });
}

void SpaceChanges::tell() {
  soon_.cancel();
  observers_.tell();
}

DesktopNameMirror::DesktopNameMirror(const ProgramServices& services, SpaceChanges& changes)
    : services_(services), changes_(changes.observe([this] { publish(); })) {}

void DesktopNameMirror::publish() {
  const auto& snapshot = services_.watcher.latest();
  auto now = names(snapshot);
  if (snapshot.displays.empty() || published_ == now || !services_.desktop.health().healthy()) {
    return;
  }
  services_.desktopNames.publish(now);
  published_ = std::move(now);
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
