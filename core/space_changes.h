#pragma once

#include <functional>

#include "base/broadcaster.h"
#include "base/subscriptions.h"
#include "core/space_store.h"
#include "core/space_watcher.h"

namespace tallowin {

/// Tells when the Spaces, or what is said of them, have become others: once, in the turn of the main queue after the
/// last of the changes that were made in one, when all of them are in effect. For whoever shows the state to somebody
/// else. Main thread only.
class SpaceChanges {
 public:
  SpaceChanges(SpaceWatcher& watcher, SpaceStore& store, MainQueue& mainQueue);
  SpaceChanges(const SpaceChanges&) = delete;
  SpaceChanges& operator=(const SpaceChanges&) = delete;

  Subscription observe(std::function<void()> observer) { return observers_.subscribe(std::move(observer)); }

  /// Tells now, instead of in the next turn if that was to be.
  void tell();

 private:
  void tellSoon();

  MainQueue& mainQueue_;
  Broadcaster<> observers_;
  WorkItem soon_;
  Subscriptions sources_;
};

}  // namespace tallowin
