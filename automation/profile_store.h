#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "automation/space_profile.h"
#include "base/app_paths.h"
#include "base/record_file.h"
#include "base/settings.h"
#include "core/space_store.h"

namespace tallowin {

/// Keeps profiles in "profiles.json" in the support folder, which is read anew every time; a file that cannot be read
/// or understood counts as empty. The setting "activeProfile" names the one in use, whose live copy is the store. Main
/// thread only.
class ProfileStore {
 public:
  struct Services {
    SpaceStore& store;
    const Settings& settings;
    Storage& storage;
    const AppPaths& paths;
    const Clock& clock;
  };

  explicit ProfileStore(Services services);

  /// Every profile, in the order of the file.
  [[nodiscard]] std::vector<SpaceProfile> list();
  [[nodiscard]] std::vector<std::string> names();
  /// The first profile of this name, ignoring case.
  [[nodiscard]] std::optional<SpaceProfile> named(std::string_view name);

  /// Saves what the store holds as the profile of exactly this name, in place of an older one, and makes it the active
  /// one. What cannot be written counts all the same, and is tried again. An empty name is the caller's mistake, as it
  /// would stand for no profile.
  void saveCurrent(const std::string& name);

  /// Switches to the first profile of this name, ignoring case: what the store holds is saved under the active
  /// profile's name, unless that is the same one, and replaced. Answers the name as stored; nothing when there is no
  /// such profile.
  std::optional<std::string> activate(std::string_view name);

  /// Deletes the profiles of exactly this name. False when there is none.
  bool remove(const std::string& name);

 private:
  [[nodiscard]] PropertyList read();
  void write(const PropertyList& profiles);
  void save(const std::string& name);

  const Services services_;
  RecordFile file_;
};

}  // namespace tallowin
