#include "automation/space_profile.h"

#include "base/date_text.h"
#include "base/property_list_reading.h"

namespace tallowin {

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

}  // namespace tallowin
