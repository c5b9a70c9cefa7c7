#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>

#include "base/broadcaster.h"
#include "base/subscriptions.h"
#include "core/program_services.h"
#include "core/space_store.h"
#include "core/space_watcher.h"
#include "platform/desktop.h"

namespace tallowin {

/// Tells when the Spaces, or what is said of them, have become others: once, in the turn of the main queue after the
/// last of the changes that were made in one, when all of them are in effect. For whoever shows the state to somebody
/// else. Main thread only.
class SpaceChanges {
 public:
  explicit SpaceChanges(const ProgramServices& services);
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

/// Publishes the names that the user gave to the ordinary Spaces of the snapshot, whenever they have become others.
/// What names itself is not published, and nothing is while the window server cannot be asked. Main thread only.
class DesktopNameMirror {
 public:
  /// Publishes for the first time once there is a snapshot.
  DesktopNameMirror(const ProgramServices& services, SpaceChanges& changes);
  DesktopNameMirror(const DesktopNameMirror&) = delete;
  DesktopNameMirror& operator=(const DesktopNameMirror&) = delete;

 private:
  using Names = std::map<ManagedSpaceID, std::string>;

  void publish();
  [[nodiscard]] Names names(const SpaceSnapshot& snapshot) const;

  const ProgramServices& services_;
  std::optional<Names> published_;
  Subscription changes_;
};

}  // namespace tallowin
