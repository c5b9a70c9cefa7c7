#include "core/space_changes.h"

namespace tallowin {

SpaceChanges::SpaceChanges(SpaceWatcher& watcher, SpaceStore& store, MainQueue& mainQueue) : mainQueue_(mainQueue) {
  // Both tell before they change.
  sources_.add(watcher.snapshot().observeWillChange([this](const SpaceSnapshot&) { tellSoon(); }));
  sources_.add(store.observeWillChange([this] { tellSoon(); }));
}

void SpaceChanges::tellSoon() {
  soon_ = mainQueue_.after(Duration::zero(), [this] { tell(); });
}

void SpaceChanges::tell() {
  soon_.cancel();
  observers_.tell();
}

}  // namespace tallowin
