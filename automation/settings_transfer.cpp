#include "automation/settings_transfer.h"

#include "base/date_text.h"
#include "base/desktop_places.h"
#include "base/json_text.h"
#include "base/property_list_reading.h"

namespace tallowin {

namespace {

constexpr auto notAnExport = "That file is not a Tallowin export.";
/// Far more than there are desktops anywhere.
constexpr std::size_t mostPlaces = 1024;

using SettingValues = std::map<std::string, PropertyList>;

/// What an export consists of, once it was looked at.
struct Bundle {
  SpaceMetas spaces;
  SettingValues settings;
  std::optional<DesktopPlaces::IDs> places;
};

/// The value of an exported setting: the first element of the list that the text holds.
std::optional<PropertyList> settingIn(const std::string& key, const std::string& text) {
  const auto* const setting = findSetting(key);
  const bool isExported = setting != nullptr && setting->exported == Exported::yes;
  const auto list = isExported ? parseJSON(text) : std::unexpected(std::string());
  return list && list->is_array() && !list->empty() ? std::optional(list->front()) : std::nullopt;
}

std::expected<Bundle, std::string> bundleFromJson(const PropertyList& json) {
  const auto exportedAt = property_list::member(json, "exportedAt", property_list::text);
  const auto* const spaces = property_list::member(json, "spaces");
  const auto* const settings = property_list::member(json, "settings");
  if (!property_list::member(json, "version", property_list::integer) || !exportedAt || !dateFromISO8601(*exportedAt) ||
      spaces == nullptr || settings == nullptr) {
    return std::unexpected("\"version\", \"exportedAt\", \"spaces\" or \"settings\" is missing or has the wrong type");
  }
  auto metas = metasFromJson(*spaces);
  if (!metas || !valueOfType(SettingType::textMap, *settings)) {
    return std::unexpected(metas ? "\"settings\" has the wrong form" : "\"spaces\" has the wrong form");
  }
  Bundle bundle{*std::move(metas), {}, {}};
  if (const auto* const places = property_list::member(json, "places")) {
    bundle.places = desktopIDsFromJson(*places);
    if (!bundle.places || bundle.places->size() > mostPlaces) {
      return std::unexpected("\"places\" has the wrong form");
    }
  }
  for (const auto& [key, text] : settings->items()) {
    if (auto value = settingIn(key, text.get<std::string>())) {
      bundle.settings.emplace(key, *std::move(value));
    }
  }
  return bundle;
}

}  // namespace

bool isBundle(const PropertyList& json) {
  return bundleFromJson(json).has_value();
}

std::string SettingsTransfer::exportData() const {
  return prettyJSON(bundle());
}

PropertyList SettingsTransfer::bundle() const {
  auto settings = PropertyList::object();
  for (const auto& setting : settingsTable()) {
    const auto value = setting.exported == Exported::yes ? services_.settings.value(setting) : std::nullopt;
    if (value) {
      settings[std::string(setting.key)] = compactJSON(PropertyList::array({*value}));
    }
  }
  PropertyList json = {{"version", 1},
                       {"exportedAt", iso8601(services_.clock.now())},
                       {"spaces", toJson(services_.store.metas())},
                       {"settings", std::move(settings)}};
  if (const auto places = services_.spacePlaces.places(); places && !areOneToN(*places)) {
    json["places"] = *places;
  }
  return json;
}

std::expected<void, ForeignFault> SettingsTransfer::importData(std::string_view bytes) {
  const auto json = parseForeignJSON(bytes);
  return json ? takeOver(*json) : std::unexpected(ForeignFault{notAnExport, json.error(), false});
}

std::expected<void, ForeignFault> SettingsTransfer::importFile(const std::filesystem::path& path,
                                                               const WillReplace& willReplace) {
  const auto json = readForeignJSON(services_.files, path, notAnExport);
  return json ? takeOver(*json, willReplace) : std::unexpected(json.error());
}

std::expected<void, ForeignFault> SettingsTransfer::takeOver(const PropertyList& bundle,
                                                             const WillReplace& willReplace) {
  auto content = bundleFromJson(bundle);
  if (!content) {
    return std::unexpected(ForeignFault{notAnExport, content.error(), false});
  }
  willReplace();
  if (!content->settings.empty()) {
    services_.settings.defaults().setObjects(content->settings);
  }
  if (content->places) {
    services_.spacePlaces.adopt(*content->places);
  }
  services_.store.replaceAll(std::move(content->spaces));
  return {};
}

std::expected<void, FileError> SettingsTransfer::exportFile(const std::filesystem::path& path) const {
  return services_.files.writeAtomically(path, exportData(), onlyTheUser, OldMode::replaced);
}

}  // namespace tallowin
