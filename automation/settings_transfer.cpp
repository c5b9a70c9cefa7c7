#include "automation/settings_transfer.h"

#include <algorithm>
#include <limits>

#include "base/date_text.h"
#include "base/desktop_places.h"
#include "base/property_list_reading.h"
#include "base/unicode.h"
#include "base/words.h"

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

constexpr auto backupsCategory = "Backups";

std::optional<Backups::Copy> copyFrom(const PropertyList& json) {
  const auto keptAt = property_list::member(json, "exportedAt", property_list::text);
  const auto date = keptAt ? dateFromISO8601(*keptAt) : std::nullopt;
  const auto reason = property_list::member(json, "reason", property_list::text);
  return date && reason && isBundle(json) ? std::optional(Backups::Copy{*date, *reason}) : std::nullopt;
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

std::filesystem::path Backups::folder() const {
  return services_.paths.supportDirectory() / "Backups";
}

/// By their running numbers, the latest first: the clock may have been set back between two of them.
std::vector<std::pair<int, std::filesystem::path>> Backups::files() const {
  std::vector<std::pair<int, std::filesystem::path>> found;
  for (const auto& name : services_.files.list(folder())) {
    const std::filesystem::path file(name);
    const auto number = file.extension() == ".json" ? decimalInteger(file.stem().string()) : std::nullopt;
    if (number && *number > 0 && *number < std::numeric_limits<int>::max()) {
      found.emplace_back(static_cast<int>(*number), folder() / file);
    }
  }
  std::ranges::sort(found, std::greater());
  return found;
}

void Backups::keep(const std::string& reason) {
  auto copy = transfer_.bundle();
  copy["reason"] = reason;
  copy[setting::activeProfile.key] = services_.settings.get(setting::activeProfile);
  if (const auto places = services_.spacePlaces.places()) {
    copy["places"] = *places;
  }
  auto present = files();
  const int number = present.empty() ? 1 : present.front().first + 1;
  const auto made = services_.files.createDirectory(folder(), privateFolder);
  const auto written = made ? services_.files.writeAtomically(folder() / (std::to_string(number) + ".json"),
                                                              prettyJSON(copy), onlyTheUser)
                            : made;
  if (!written) {
    services_.log.error(backupsCategory, "kept no copy " + reason + ": " + written.error().description);
    return;
  }
  for (std::size_t index = most - 1; index < present.size(); ++index) {
    if (const auto removed = services_.files.remove(present[index].second); !removed) {
      services_.log.error(backupsCategory,
                          "cannot remove " + present[index].second.string() + ": " + removed.error().description);
    }
  }
}

std::vector<Backups::Found> Backups::read() const {
  std::vector<Found> all;
  for (const auto& [number, path] : files()) {
    const auto text = services_.files.read(path);
    auto json = text ? parseJSON(*text) : std::unexpected(text.error().description);
    if (auto copy = json ? copyFrom(*json) : std::nullopt) {
      all.push_back({*std::move(copy), *std::move(json)});
    } else {
      services_.log.error(backupsCategory,
                          "passed over " + path.string() + ": " + (json ? "it is no copy" : json.error()));
    }
  }
  return all;
}

std::vector<Backups::Copy> Backups::list() const {
  std::vector<Copy> copies;
  std::ranges::transform(read(), std::back_inserter(copies), &Found::copy);
  return copies;
}

std::optional<Backups::Restored> Backups::restore(std::size_t number) {
  const auto all = read();
  if (number < 1 || number > all.size()) {
    return std::nullopt;
  }
  auto content = all[number - 1].content;
  const auto* const saved = property_list::member(content, "places");
  const auto places = saved != nullptr ? desktopIDsFromJson(*saved) : std::nullopt;
  content.erase("places");
  if (!transfer_.takeOver(content, [this] { keep("before restore"); })) {
    return std::nullopt;
  }
  const auto profile = property_list::member(content, setting::activeProfile.key, property_list::text);
  services_.settings.set(setting::activeProfile, profile.value_or(""));
  const bool complete = !places || !services_.spacePlaces.places() || services_.spacePlaces.restore(*places);
  return complete ? Restored::all : Restored::withoutDesktops;
}

std::string Backups::listText() const {
  const auto copies = list();
  std::string text;
  for (std::size_t index = 0; index < copies.size(); ++index) {
    const auto& [keptAt, reason] = copies[index];
    text += std::to_string(index + 1) + "  " + localDateText(keptAt, services_.clock) + "  " + printable(reason) + '\n';
  }
  return text;
}

PropertyList backupRecords(const std::vector<Backups::Copy>& copies) {
  auto records = PropertyList::array();
  for (std::size_t index = 0; index < copies.size(); ++index) {
    records.push_back(
        {{"number", index + 1}, {"keptAt", iso8601(copies[index].keptAt)}, {"reason", copies[index].reason}});
  }
  return records;
}

}  // namespace tallowin
