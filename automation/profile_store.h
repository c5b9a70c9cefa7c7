#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "commands/outcome.h"
#include "core/program_services.h"
#include "core/space_meta.h"
#include "platform/property_list.h"

namespace tallowin {

/// A complete, named copy of what the user has said about the Spaces. Its JSON keys are its members' names.
struct SpaceProfile {
  std::string name;  ///< as the user typed it
  SpaceMetas metas;
  Date savedAt;  ///< to the second
  bool operator==(const SpaceProfile&) const = default;
};

[[nodiscard]] PropertyList toJson(const SpaceProfile& profile);

/// Nothing when a member is missing or has the wrong type.
[[nodiscard]] std::optional<SpaceProfile> profileFromJson(const PropertyList& json);

/// Keeps profiles in "profiles.json" in the support folder, which is read anew every time; a file that cannot be read
/// or understood counts as empty. The setting "activeProfile" names the one in use, whose live copy is the store. Main
/// thread only.
class ProfileStore {
 public:
  explicit ProfileStore(const ProgramServices& services);

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

  /// The user's command: activates the profile of this name, and tells the user.
  Outcome use(const std::string& name);

  /// To be called when a set of displays comes, the first one too: uses the profile that was chosen for it. Who
  /// switches to another one afterwards keeps it until the next set comes.
  void displaysChanged();

  /// The profile chosen for the displays that are connected; nothing when there is none.
  [[nodiscard]] std::optional<std::string> chosenForDisplays() const;

  /// Chooses the profile for these displays, or none. False when that could not be written.
  bool chooseForDisplays(const std::optional<std::string>& profile);

  /// Deletes the profiles of exactly this name. False when there is none.
  bool remove(const std::string& name);

 private:
  [[nodiscard]] PropertyList read();
  [[nodiscard]] std::string displaySet() const;
  void write(const PropertyList& profiles);
  void save(const std::string& name);

  const ProgramServices& services_;
  RecordFile file_;
};

/// The profiles for reading, one line each, with "*" before the active one.
[[nodiscard]] std::string profileList(const std::vector<std::string>& names, const std::string& active);

/// The same for programs: a list of {"name", "savedAt", "isActive"}.
[[nodiscard]] PropertyList profileRecords(const std::vector<SpaceProfile>& profiles, const std::string& active);

}  // namespace tallowin
