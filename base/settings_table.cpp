#include "base/settings_table.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <numeric>
#include <vector>

#include "base/json_text.h"
#include "base/property_list_reading.h"
#include "base/words.h"

namespace tallowin {

namespace {

constexpr Setting table[] = {setting::menuBarStyle,
                             setting::menuBarShowsIcon,
                             setting::hudEnabled,
                             setting::hudDuration,
                             setting::thumbnailsEnabled,
                             setting::thumbnailRefreshInterval,
                             setting::switchMode,
                             setting::overlayHotKey,
                             setting::overlayShowsAllDisplays,
                             setting::didShowOnboarding,
                             setting::askToNameNewSpaces,
                             setting::missionControlLabels,
                             setting::desktopShortcutModifier,
                             setting::moveWindowShortcuts,
                             setting::navigationShortcuts,
                             setting::wrapAround,
                             setting::skipEmptyWhenCycling,
                             setting::hideEmptySpaces,
                             setting::hideFullscreenSpaces,
                             setting::showAppIcons,
                             setting::switchSound,
                             setting::speakSpaceNames,
                             setting::hudPosition,
                             setting::hudSize,
                             setting::hotCorner,
                             setting::notchHover,
                             setting::menuBarScrollSwitches,
                             setting::floatingToolbar,
                             setting::desktopLabel,
                             setting::desktopLabelPosition,
                             setting::dockClickProtection,
                             setting::timeTracking,
                             setting::runAutomations,
                             setting::followMovedWindow,
                             setting::backAndForth,
                             setting::autoNameSpaces,
                             setting::restoreFocus,
                             setting::spaceLock,
                             setting::applyAppRules,
                             setting::autoSaveLayout,
                             setting::restoreOnDisplayReconnect,
                             setting::gridColumns,
                             setting::groupOverview,
                             setting::scratchpadApp,
                             setting::spaceDock,
                             setting::fourFingerTap,
                             setting::localAPI,
                             setting::activeProfile,
                             setting::overviewOrder,
                             setting::shortcuts,
                             setting::toldShortcuts,
                             setting::profileByDisplaySetup,
                             setting::recentSpaceNames,
                             setting::demoMode};

bool allTexts(const PropertyList& value) {
  return std::ranges::all_of(value, [](const PropertyList& element) { return element.is_string(); });
}

std::optional<PropertyList> wholeNumber(std::string_view text) {
  const auto number = decimalInteger(text);
  return number ? std::optional<PropertyList>(*number) : std::nullopt;
}

std::optional<PropertyList> finiteReal(std::string_view text) {
  double number = 0;
  const auto* const begin = text.data();
  const auto* const end = begin + text.size();
  const auto [stopped, error] = std::from_chars(begin, end, number);
  const bool good = error == std::errc() && stopped == end && std::isfinite(number);
  return good ? std::optional<PropertyList>(number) : std::nullopt;
}

std::optional<PropertyList> json(SettingType type, std::string_view text) {
  const auto value = parseJSON(text);
  return value ? valueOfType(type, *value) : std::nullopt;
}

std::optional<PropertyList> readAs(SettingType type, std::string_view text) {
  switch (type) {
    case SettingType::boolean:
      return json(type, text);
    case SettingType::real:
      return finiteReal(text);
    case SettingType::integer:
      return wholeNumber(text);
    case SettingType::text:
      return PropertyList(text);
    case SettingType::textList:
    case SettingType::textMap:
      return json(type, text);
  }
  return std::nullopt;
}

/// How many single-character edits turn one text into the other (Levenshtein distance).
std::size_t distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i);
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t substituted = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
      diagonal = std::exchange(row[j], std::min({row[j] + 1, row[j - 1] + 1, substituted}));
    }
  }
  return row.back();
}

}  // namespace

PropertyList Setting::registeredDefault() const {
  return std::visit(
      [](const auto& value) -> PropertyList {
        if constexpr (std::is_same_v<decltype(value), const std::monostate&>) {
          return nullptr;
        } else {
          return value;
        }
      },
      registered);
}

std::span<const Setting> settingsTable() {
  return table;
}

const Setting* findSetting(std::string_view key) {
  const auto* const found = std::ranges::find(table, key, &Setting::key);
  return found != std::end(table) ? found : nullptr;
}

std::optional<PropertyList> valueOfType(SettingType type, const PropertyList& value) {
  const auto valueIf = [&value](bool fits) { return fits ? std::optional(value) : std::nullopt; };
  using enum SettingType;
  switch (type) {
    case boolean:
      return valueIf(value.is_boolean());
    case real:
      return value.is_number() ? std::optional<PropertyList>(value.get<double>()) : std::nullopt;
    case integer:
      return valueIf(property_list::integer(value).has_value());
    case text:
      return valueIf(value.is_string());
    case textList:
      return valueIf(property_list::textList(value).has_value());
    case textMap:
      return valueIf(value.is_object() && allTexts(value));
  }
  return std::nullopt;
}

std::string_view nameOfType(SettingType type) {
  constexpr auto names = std::to_array<std::string_view>(
      {"true or false", "a number", "a whole number", "a text", "a JSON list of texts", "a JSON object of texts"});
  return names.at(static_cast<std::size_t>(type));
}

std::expected<PropertyList, std::string> settingFromText(const Setting& setting, std::string_view text) {
  const auto key = std::string(setting.key);
  auto value = readAs(setting.type, text);
  if (!value) {
    return std::unexpected("the setting " + key + " takes " + std::string(nameOfType(setting.type)) + ", not \"" +
                           std::string(text) + "\"");
  }
  if (!setting.cases.empty() && std::ranges::find(setting.cases, text) == setting.cases.end()) {
    return std::unexpected("the setting " + key + " is one of " + joined(setting.cases, ", ") + ", not \"" +
                           std::string(text) + "\"");
  }
  return *std::move(value);
}

std::string textOfSetting(const Setting& setting, const PropertyList& value) {
  if (!value.is_string()) {
    return compactJSON(value);
  }
  const auto text = value.get<std::string>();
  const bool reads = setting.cases.empty() || std::ranges::find(setting.cases, text) != setting.cases.end();
  return reads ? text : std::string(setting.fallback);
}

std::string unknownSettingMessage(std::string_view key) {
  const auto message = "there is no setting called \"" + std::string(key) + "\"";
  constexpr std::size_t farthestSuggestion = 4;
  const auto* const nearest =
      std::ranges::min_element(table, {}, [key](const Setting& setting) { return distance(key, setting.key); });
  if (key.size() > 64 || distance(key, nearest->key) > farthestSuggestion) {
    return message + "; --settings-list lists them all";
  }
  return message + "; did you mean " + std::string(nearest->key) + "?";
}

}  // namespace tallowin
