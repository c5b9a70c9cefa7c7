#pragma once

#include <map>
#include <optional>
#include <string>

#include "core/space_changes.h"
#include "platform/desktop_names.h"

namespace tallowin {

/// Publishes the names that the user gave to the ordinary Spaces of the snapshot, whenever they have become others.
/// What names itself is not published, and nothing is while the window server cannot be asked. Main thread only.
class DesktopNameMirror {
 public:
  struct Services {
    SpaceWatcher& watcher;
    SpaceStore& store;
    SpaceChanges& changes;
    Desktop& desktop;
    DesktopNames& desktopNames;
  };

  /// Publishes for the first time once there is a snapshot.
  explicit DesktopNameMirror(Services services);
  DesktopNameMirror(const DesktopNameMirror&) = delete;
  DesktopNameMirror& operator=(const DesktopNameMirror&) = delete;

 private:
  using Names = std::map<ManagedSpaceID, std::string>;

  void publish();
  [[nodiscard]] Names names(const SpaceSnapshot& snapshot) const;

  const Services services_;
  std::optional<Names> published_;
  Subscription changes_;
};

}  // namespace tallowin
