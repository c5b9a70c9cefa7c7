#include "automation/profile_store.h"

#include <algorithm>

#include "base/date_text.h"
#include "base/json_text.h"
#include "base/property_list_reading.h"
#include "base/unicode.h"
#include "windows/window_layout.h"

namespace tallowin {

namespace {

/// The elements are records that have been looked at, so they have a name.
auto hasName(const std::string& name) {
  return [&name](const PropertyList& record) { return record.at("name") == name; };
}

}  // namespace

PropertyList toJson(const SpaceProfile& profile) {
  return {{"name", profile.name}, {"metas", toJson(profile.metas)}, {"savedAt", iso8601(profile.savedAt)}};
}

std::optional<SpaceProfile> profileFromJson(const PropertyList& json) {
  auto name = property_list::member(json, "name", property_list::text);
  const auto* const records = property_list::member(json, "metas");
  auto metas = records != nullptr ? metasFromJson(*records) : std::nullopt;
  const auto savedAt = property_list::member(json, "savedAt", property_list::text);
  const auto date = savedAt ? dateFromISO8601(*savedAt) : std::nullopt;
  if (!name || !metas || !date) {
    return std::nullopt;
  }
  return SpaceProfile{*std::move(name), *std::move(metas), *date};
}

ProfileStore::ProfileStore(const ProgramServices& services)
    : services_(services),
      file_(services.storage, services.paths.supportDirectory() / "profiles.json", "ProfileStore") {}

/// The records as they stand, with what a newer version wrote into them.
PropertyList ProfileStore::read() {
  return file_.readList([](const PropertyList& record) { return profileFromJson(record).has_value(); });
}

/// What cannot be written is kept and tried again; who must know asks the storage.
void ProfileStore::write(const PropertyList& profiles) {
  file_.replace(prettyJSON(profiles));
}

std::vector<SpaceProfile> ProfileStore::list() {
  return listFromJson(read(), profileFromJson).value_or(std::vector<SpaceProfile>());
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

Outcome ProfileStore::use(const std::string& name) {
  const auto stored = activate(name);
  if (!stored) {
    const auto message = "No profile is called " + name;
    services_.toasts.show({message, std::nullopt, true});
    return Outcome::refused(message);
  }
  services_.toasts.show({"Profile: " + *stored, "person.crop.rectangle.stack"});
  return Outcome::done();
}

std::string profileList(const std::vector<std::string>& names, const std::string& active) {
  std::string text;
  for (const auto& name : names) {
    text += (name == active ? "* " : "  ") + printable(name) + '\n';
  }
  return text;
}

PropertyList profileRecords(const std::vector<SpaceProfile>& profiles, const std::string& active) {
  return listToJson(profiles, [&](const SpaceProfile& profile) -> PropertyList {
    return {{"name", profile.name}, {"savedAt", iso8601(profile.savedAt)}, {"isActive", profile.name == active}};
  });
}

std::string ProfileStore::displaySet() const {
  return displaySetKey(connectedDisplays(services_.displays, services_.watcher.latest()));
}

void ProfileStore::displaysChanged() {
  const auto choice = chosenForDisplays();
  if (choice && *choice != services_.settings.get(setting::activeProfile) && named(*choice)) {
    use(*choice);
  }
}

std::optional<std::string> ProfileStore::chosenForDisplays() const {
  const auto choices = services_.settings.get(setting::profileByDisplaySetup);
  const auto found = choices.find(displaySet());
  return found != choices.end() ? std::optional(found->second) : std::nullopt;
}

bool ProfileStore::chooseForDisplays(const std::optional<std::string>& profile) {
  auto choices = services_.settings.get(setting::profileByDisplaySetup);
  if (profile) {
    choices[displaySet()] = *profile;
  } else {
    choices.erase(displaySet());
  }
  return services_.settings.set(setting::profileByDisplaySetup, choices);
}

}  // namespace tallowin
