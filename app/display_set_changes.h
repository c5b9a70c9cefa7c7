#pragma once

#include <functional>

#include "automation/automatic_profile.h"
#include "windows/display_set_watch.h"
#include "windows/reconnect_restore.h"

namespace tallowin {

/// What happens when displays are connected or disconnected: first the profile chosen for the new set comes into use,
/// then windows go back to where they were with it. Main thread only.
class DisplaySetChanges {
 public:
  struct Services {
    DisplaySetWatch& displaySets;
    AutomaticProfile& automaticProfile;
    ReconnectRestore& reconnect;
    std::function<SpaceSnapshot()> snapshot;  ///< answers the current one
  };

  explicit DisplaySetChanges(Services services) : services_(std::move(services)) {}
  DisplaySetChanges(const DisplaySetChanges&) = delete;
  DisplaySetChanges& operator=(const DisplaySetChanges&) = delete;

  /// From now on displays are watched. Call once, after the first snapshot.
  void start();

  /// To be called with every snapshot.
  void look(const SpaceSnapshot& snapshot);

 private:
  const Services services_;
};

}  // namespace tallowin
