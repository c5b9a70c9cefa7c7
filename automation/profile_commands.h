#pragma once

#include <string>

#include "automation/profile_store.h"
#include "commands/outcome.h"
#include "platform/toasts.h"

namespace tallowin {

/// The user's commands about profiles, with what the user is told of them. Main thread only.
class ProfileCommands {
 public:
  ProfileCommands(ProfileStore& profiles, Toasts& toasts) : profiles_(profiles), toasts_(toasts) {}

  /// Switches to the profile of this name, ignoring case.
  Outcome use(const std::string& name);

 private:
  ProfileStore& profiles_;
  Toasts& toasts_;
};

/// The profiles for reading, one line each, with "*" before the active one.
[[nodiscard]] std::string profileList(const std::vector<std::string>& names, const std::string& active);

/// The same for programs: a list of {"name", "savedAt", "isActive"}.
[[nodiscard]] PropertyList profileRecords(const std::vector<SpaceProfile>& profiles, const std::string& active);

}  // namespace tallowin
