#include "base/settings_table.h"

#include <algorithm>

#include "base/property_list_reading.h"
#include "base/setting_enumerations.h"

namespace tallowin {

namespace {

using enum SettingType;
using enum SettingsPane;

template <typename Enumeration>
Setting enumerated(std::string_view key, Enumeration registeredDefault, SettingsPane pane, std::string_view sentence) {
  return {key,
          text,
          storedText(registeredDefault),
          pane,
          sentence,
          StoredCases<Enumeration>::texts,
          storedText(StoredCases<Enumeration>::fallback)};
}

std::vector<Setting> registeredSettings() {
  return {
      enumerated("menuBarStyle", MenuBarStyle::name, appearance, "What the menu-bar item shows."),
      {"menuBarShowsIcon", boolean, true, appearance, "Show the Space's symbol in the menu-bar item."},
      {"hudEnabled", boolean, true, appearance, "Show the pop-up on every switch."},
      {"hudDuration", real, 1.2, appearance, "Seconds the pop-up stays."},
      {"thumbnailsEnabled", boolean, true, overview, "Capture previews of Spaces."},
      {"thumbnailRefreshInterval", real, 30.0, overview, "Seconds between preview refreshes."},
      enumerated("switchMode", SwitchMode::instant, general, "How Spaces are switched."),
      enumerated("overlayHotKey", OverlayHotKeyPreset::optionTab, shortcuts, "Hot key that opens the overview."),
      {"overlayShowsAllDisplays", boolean, true, overview, "The overview lists the Spaces of every display."},
      {"didShowOnboarding", boolean, false, none, "The first-run welcome has been shown."},
      {"askToNameNewSpaces", boolean, true, general, "Offer to name a Space when one is created."},
      {"missionControlLabels", boolean, true, general, "Label the Spaces inside Mission Control."},
      enumerated("desktopShortcutModifier", DesktopShortcutModifier::controlOption, shortcuts,
                 "Modifier of the per-desktop number shortcuts."),
      {"moveWindowShortcuts", boolean, true, shortcuts, "Shortcuts that move the front window."},
      {"navigationShortcuts", boolean, true, shortcuts, "Shortcuts that step left and right."},
      {"wrapAround", boolean, true, shortcuts, "Wrap around at the ends."},
      {"skipEmptyWhenCycling", boolean, false, shortcuts, "Skip empty Spaces."},
      {"hideEmptySpaces", boolean, false, overview, "Hide Spaces without windows in the overview."},
      {"hideFullscreenSpaces", boolean, false, overview, "Hide full-screen Spaces in the overview."},
      {"showAppIcons", boolean, true, overview, "Show app icons on the overview tiles."},
      {"switchSound", text, "", appearance, "System sound played on every switch; empty plays nothing."},
      {"speakSpaceNames", boolean, false, appearance, "Speak the Space's name on every switch."},
      enumerated("hudPosition", HUDPosition::top, appearance, "Where the pop-up stands."),
      enumerated("hudSize", HUDSize::regular, appearance, "Size of the pop-up."),
      enumerated("hotCorner", HotCorner::none, overview, "Screen corner that opens the overview."),
      {"notchHover", boolean, false, overview, "Rest the pointer on the notch to show Spaces."},
      {"menuBarScrollSwitches", boolean, true, appearance, "Scrolling over the menu-bar item switches Spaces."},
      {"floatingToolbar", boolean, false, appearance, "Show the floating toolbar."},
      {"desktopLabel", boolean, false, appearance, "Show the Space's name on the desktop."},
      enumerated("desktopLabelPosition", DesktopLabelPosition::bottomLeft, appearance,
                 "Where the desktop label stands."),
      {"dockClickProtection", boolean, false, general, "Undo a Space jump caused by a Dock click."},
      {"timeTracking", boolean, true, statistics, "Track time spent in each Space."},
      {"runAutomations", boolean, true, general, "Run the automations of Spaces."},
      {"followMovedWindow", boolean, false, general, "Follow a window after moving it to another Space."},
      {"backAndForth", boolean, true, shortcuts, "Switching to the active Space goes back to the previous one."},
      {"autoNameSpaces", boolean, false, general,
       "Name unnamed Spaces after the desktop's own name or the application with most windows."},
      {"restoreFocus", boolean, true, windows, "Refocus the last focused window on entering a Space."},
      {"spaceLock", boolean, false, windows, "Stay on the Space when an app would pull you to another one."},
      {"applyAppRules", boolean, true, windows, "Move new windows of an app to the Space that pins it."},
      {"autoSaveLayout", boolean, true, windows, "Save window layouts automatically."},
      {"restoreOnDisplayReconnect", boolean, true, windows, "Restore window places when a display set returns."},
      {"gridColumns", integer, 0, shortcuts, "Columns of the Space grid used by up and down stepping; 0 is no grid."},
      {"groupOverview", boolean, true, overview, "Group the overview by category."},
      {"scratchpadApp", text, "", windows, "App shown and hidden by the scratchpad command."},
      {"spaceDock", boolean, false, windows, "Show the Space dock."},
      {"fourFingerTap", boolean, false, general, "Four-finger tap on the trackpad opens the overview."},
      {"localAPI", boolean, false, general, "Let other programs on this machine read the Spaces and send commands."},
      {"activeProfile", text, "", none, "Name of the profile in use."},
  };
}

std::vector<Setting> allSettings() {
  auto settings = registeredSettings();
  settings.push_back({"overviewOrder", textList, nullptr, none, "Arrangement of the overview's tiles."});
  settings.push_back({"profileByDisplaySetup", textMap, nullptr, none, "Which profile to use for which display set."});
  settings.push_back({"recentSpaceNames", textList, nullptr, none, "Names given recently, newest first."});
  settings.push_back({"demoMode", boolean, nullptr, none, "Demonstration mode with sample names."});
  return settings;
}

bool allTexts(const PropertyList& value) {
  return std::ranges::all_of(value, [](const PropertyList& element) { return element.is_string(); });
}

}  // namespace

const std::vector<Setting>& settingsTable() {
  static const std::vector<Setting> table = allSettings();
  return table;
}

const Setting* findSetting(std::string_view key) {
  const auto& table = settingsTable();
  const auto found = std::ranges::find(table, key, &Setting::key);
  return found != table.end() ? &*found : nullptr;
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
