#pragma once

#include <optional>
#include <string>

#include "automation/profile_commands.h"
#include "platform/displays.h"

namespace tallowin {

/// Switches to the profile that the user has chosen for a set of displays when that set is connected. Main thread only.
class AutomaticProfile {
 public:
  struct Services {
    ProfileStore& profiles;
    ProfileCommands& commands;
    const Settings& settings;
    Displays& displays;
  };

  explicit AutomaticProfile(Services services) : services_(services) {}

  /// To be called when a set of displays comes, the first one too. Who switches to another profile afterwards keeps it
  /// until the next set comes. The user is told.
  void displaysChanged(const SpaceSnapshot& snapshot);

  /// The profile chosen for the displays that are connected; nothing when there is none.
  [[nodiscard]] std::optional<std::string> chosen(const SpaceSnapshot& snapshot) const;

  /// Chooses the profile for these displays, or none. False when that could not be written.
  bool choose(const std::optional<std::string>& profile, const SpaceSnapshot& snapshot);

 private:
  [[nodiscard]] std::string key(const SpaceSnapshot& snapshot) const;

  const Services services_;
};

}  // namespace tallowin
