#include "automation/profile_store.h"

#include <algorithm>

#include "base/json_text.h"
#include "base/unicode.h"

namespace tallowin {

namespace {

/// The elements are records that have been looked at, so they have a name.
auto hasName(const std::string& name) {
  return [&name](const PropertyList& record) { return record.at("name") == name; };
}

}  // namespace

ProfileStore::ProfileStore(Services services)
    : services_(services),
      file_(services.storage, services.paths.supportDirectory() / "profiles.json", "ProfileStore") {}

/// The records as they stand, with what a newer version wrote into them.
PropertyList ProfileStore::read() {
  return file_.readList([](const PropertyList& record) { return profileFromJson(record).has_value(); });
}

/// What cannot be written is kept and tried again; who must know asks the storage.
void ProfileStore::write(const PropertyList& profiles) {
  static_cast<void>(file_.write(prettyJSON(profiles)));
}

std::vector<SpaceProfile> ProfileStore::list() {
  std::vector<SpaceProfile> profiles;
  for (const auto& record : read()) {
    if (auto profile = profileFromJson(record)) {
      profiles.push_back(*std::move(profile));
    }
  }
  return profiles;
}

std::vector<std::string> ProfileStore::names() {
  std::vector<std::string> names;
  std::ranges::transform(list(), std::back_inserter(names), &SpaceProfile::name);
  return names;
}

std::optional<SpaceProfile> ProfileStore::named(std::string_view name) {
  auto profiles = list();
  const auto found = std::ranges::find_if(
      profiles, [&](const SpaceProfile& profile) { return equalIgnoringCase(profile.name, name); });
  return found != profiles.end() ? std::optional(std::move(*found)) : std::nullopt;
}

void ProfileStore::save(const std::string& name) {
  auto profiles = read();
  auto profile = toJson(SpaceProfile{name, services_.store.metas(), services_.clock.now()});
  if (const auto old = std::ranges::find_if(profiles, hasName(name)); old != profiles.end()) {
    old->update(profile);
  } else {
    profiles.push_back(std::move(profile));
  }
  write(profiles);
}

void ProfileStore::saveCurrent(const std::string& name) {
  save(name);
  services_.settings.set(setting::activeProfile, name);
}

std::optional<std::string> ProfileStore::activate(std::string_view name) {
  auto profile = named(name);
  if (!profile) {
    return std::nullopt;
  }
  if (const auto active = services_.settings.get(setting::activeProfile); !active.empty() && active != profile->name) {
    save(active);
  }
  services_.store.replaceAll(std::move(profile->metas));
  services_.settings.set(setting::activeProfile, profile->name);
  return profile->name;
}

bool ProfileStore::remove(const std::string& name) {
  const auto profiles = read();
  auto kept = PropertyList::array();
  std::ranges::remove_copy_if(profiles, std::back_inserter(kept), hasName(name));
  const bool removed = kept.size() < profiles.size();
  if (removed) {
    write(kept);
  }
  if (removed && services_.settings.get(setting::activeProfile) == name) {
    services_.settings.set(setting::activeProfile, "");
  }
  return removed;
}

}  // namespace tallowin
