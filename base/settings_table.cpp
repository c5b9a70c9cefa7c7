#include "base/settings_table.h"

#include <algorithm>
#include <array>

#include "base/property_list_reading.h"

namespace tallowin {

namespace {

using enum SettingType;

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
                             setting::profileByDisplaySetup,
                             setting::recentSpaceNames,
                             setting::demoMode};

bool allTexts(const PropertyList& value) {
  return std::ranges::all_of(value, [](const PropertyList& element) { return element.is_string(); });
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
      return valueIf(value.is_array() && allTexts(value));
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

}  // namespace tallowin
