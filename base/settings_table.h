#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <expected>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

#include "platform/property_list.h"

namespace tallowin {

/// The settings that are one of a few cases. Each is stored as the text of its case's name, exactly as spelled here.
enum class SwitchMode { instant, classic };
enum class DesktopShortcutModifier { off, controlOption, controlCommand, optionCommand, hyper };
enum class OverlayHotKeyPreset { optionTab, controlOptionSpace, optionBacktick, commandOptionSpace, f13 };
enum class DesktopLabelPosition { bottomLeft, bottomRight, topLeft, topRight, center };
enum class HUDSize { small, regular, large };
enum class HUDPosition { top, center, bottom };
enum class MenuBarStyle { name, number, numberAndName, iconOnly, strip, dots };
enum class HotCorner { none, topLeft, topRight, bottomLeft, bottomRight };

/// The stored texts of an enumeration's cases, in their order.
template <typename Enumeration>
inline constexpr std::array<std::string_view, 0> storedTexts{};
template <>
inline constexpr auto storedTexts<SwitchMode> = std::to_array<std::string_view>({"instant", "classic"});
template <>
inline constexpr auto storedTexts<DesktopShortcutModifier> =
    std::to_array<std::string_view>({"off", "controlOption", "controlCommand", "optionCommand", "hyper"});
template <>
inline constexpr auto storedTexts<OverlayHotKeyPreset> =
    std::to_array<std::string_view>({"optionTab", "controlOptionSpace", "optionBacktick", "commandOptionSpace", "f13"});
template <>
inline constexpr auto storedTexts<DesktopLabelPosition> =
    std::to_array<std::string_view>({"bottomLeft", "bottomRight", "topLeft", "topRight", "center"});
template <>
inline constexpr auto storedTexts<HUDSize> = std::to_array<std::string_view>({"small", "regular", "large"});
template <>
inline constexpr auto storedTexts<HUDPosition> = std::to_array<std::string_view>({"top", "center", "bottom"});
template <>
inline constexpr auto storedTexts<MenuBarStyle> =
    std::to_array<std::string_view>({"name", "number", "numberAndName", "iconOnly", "strip", "dots"});
template <>
inline constexpr auto storedTexts<HotCorner> =
    std::to_array<std::string_view>({"none", "topLeft", "topRight", "bottomLeft", "bottomRight"});

/// The case that an unknown text reads as, deliberately not always the registered default.
template <typename Enumeration>
inline constexpr auto fallbackCase = Enumeration{};
template <>
inline constexpr auto fallbackCase<HUDSize> = HUDSize::regular;

/// The text that a case is stored as.
template <typename Enumeration>
[[nodiscard]] constexpr std::string_view storedText(Enumeration value) {
  return storedTexts<Enumeration>.at(static_cast<std::size_t>(value));
}

/// The case that a stored text reads as; the comparison is exact.
template <typename Enumeration>
[[nodiscard]] constexpr Enumeration caseOfStoredText(std::string_view text) {
  constexpr auto& texts = storedTexts<Enumeration>;
  const auto found = std::ranges::find(texts, text);
  return found == texts.end() ? fallbackCase<Enumeration> : static_cast<Enumeration>(found - texts.begin());
}

enum class SettingType { boolean, real, integer, text, textList, textMap };

/// The pane of the settings window that a setting stands in; `none` for those that the program keeps for itself.
enum class SettingsPane { none, general, windows, shortcuts, appearance, overview, statistics };

/// Whether an export takes a setting to another machine.
enum class Exported { no, yes };

/// What is said of one setting, whatever its type.
struct Setting {
  std::string_view key;
  SettingType type;
  /// Registered at start-up and answered while the user has not set the key; none for a setting without a default.
  std::variant<std::monostate, bool, double, std::int64_t, std::string_view> registered;
  SettingsPane pane;
  /// What it does, as one sentence for people.
  std::string_view sentence;
  Exported exported;
  /// For a text that names a case: the texts allowed. Empty for every other setting.
  std::span<const std::string_view> cases = {};
  /// What a text that names no case reads as.
  std::string_view fallback = {};

  /// The registered default; null for none.
  [[nodiscard]] PropertyList registeredDefault() const;
};

template <typename Value>
[[nodiscard]] consteval SettingType settingType() {
  if constexpr (std::is_same_v<Value, bool>) {
    return SettingType::boolean;
  } else if constexpr (std::is_same_v<Value, double>) {
    return SettingType::real;
  } else if constexpr (std::is_same_v<Value, std::int64_t>) {
    return SettingType::integer;
  } else if constexpr (std::is_same_v<Value, std::vector<std::string>>) {
    return SettingType::textList;
  } else if constexpr (std::is_same_v<Value, std::map<std::string, std::string>>) {
    return SettingType::textMap;
  } else {
    return SettingType::text;
  }
}

/// A setting that reads as a `Value`: bool, double, std::int64_t, std::string, a list or a map of texts, or an
/// enumeration that is stored as a text.
template <typename Value>
struct SettingOf : Setting {
  using Default = std::conditional_t<std::is_same_v<Value, std::string>, std::string_view, Value>;

  constexpr SettingOf(std::string_view name, Default standard, SettingsPane where, std::string_view does,
                      Exported isExported = Exported::yes)
      : Setting(row(name, standard, where, does, isExported)) {}
  constexpr SettingOf(std::string_view name, std::nullopt_t /*standard*/, SettingsPane where, std::string_view does,
                      Exported isExported = Exported::yes)
      : Setting{name, settingType<Value>(), {}, where, does, isExported} {}

 private:
  static constexpr Setting row(std::string_view name, Default standard, SettingsPane where, std::string_view does,
                               Exported isExported) {
    if constexpr (std::is_enum_v<Value>) {
      return {name, SettingType::text, storedText(standard), where,
              does, isExported,        storedTexts<Value>,   storedText(fallbackCase<Value>)};
    } else {
      return {name, settingType<Value>(), standard, where, does, isExported};
    }
  }
};

/// All settings, each declared here once: registration, reading, the command line, export and the documents come from
/// these rows. A row that is not in the table (settings_table.cpp) is a setting that does not exist.
namespace setting {

using Pane = SettingsPane;

inline constexpr SettingOf<MenuBarStyle> menuBarStyle{"menuBarStyle", MenuBarStyle::name, Pane::appearance,
                                                      "What the menu-bar item shows."};
inline constexpr SettingOf<bool> menuBarShowsIcon{"menuBarShowsIcon", true, Pane::appearance,
                                                  "Show the Space's symbol in the menu-bar item."};
inline constexpr SettingOf<bool> hudEnabled{"hudEnabled", true, Pane::appearance, "Show the pop-up on every switch."};
inline constexpr SettingOf<double> hudDuration{"hudDuration", 1.2, Pane::appearance, "Seconds the pop-up stays."};
inline constexpr SettingOf<bool> thumbnailsEnabled{"thumbnailsEnabled", true, Pane::overview,
                                                   "Capture previews of Spaces."};
inline constexpr SettingOf<double> thumbnailRefreshInterval{"thumbnailRefreshInterval", 30.0, Pane::overview,
                                                            "Seconds between preview refreshes."};
inline constexpr SettingOf<SwitchMode> switchMode{"switchMode", SwitchMode::instant, Pane::general,
                                                  "How Spaces are switched."};
inline constexpr SettingOf<OverlayHotKeyPreset> overlayHotKey{"overlayHotKey", OverlayHotKeyPreset::optionTab,
                                                              Pane::shortcuts, "Hot key that opens the overview."};
inline constexpr SettingOf<bool> overlayShowsAllDisplays{"overlayShowsAllDisplays", true, Pane::overview,
                                                         "The overview lists the Spaces of every display."};
inline constexpr SettingOf<bool> didShowOnboarding{"didShowOnboarding", false, Pane::none,
                                                   "The first-run welcome has been shown.", Exported::no};
inline constexpr SettingOf<bool> askToNameNewSpaces{"askToNameNewSpaces", true, Pane::general,
                                                    "Offer to name a Space when one is created."};
inline constexpr SettingOf<bool> missionControlLabels{"missionControlLabels", true, Pane::general,
                                                      "Label the Spaces inside Mission Control."};
inline constexpr SettingOf<DesktopShortcutModifier> desktopShortcutModifier{
    "desktopShortcutModifier", DesktopShortcutModifier::controlOption, Pane::shortcuts,
    "Modifier of the per-desktop number shortcuts."};
inline constexpr SettingOf<bool> moveWindowShortcuts{"moveWindowShortcuts", true, Pane::shortcuts,
                                                     "Shortcuts that move the front window."};
inline constexpr SettingOf<bool> navigationShortcuts{"navigationShortcuts", true, Pane::shortcuts,
                                                     "Shortcuts that step left and right."};
inline constexpr SettingOf<bool> wrapAround{"wrapAround", true, Pane::shortcuts, "Wrap around at the ends."};
inline constexpr SettingOf<bool> skipEmptyWhenCycling{"skipEmptyWhenCycling", false, Pane::shortcuts,
                                                      "Skip empty Spaces."};
inline constexpr SettingOf<bool> hideEmptySpaces{"hideEmptySpaces", false, Pane::overview,
                                                 "Hide Spaces without windows in the overview."};
inline constexpr SettingOf<bool> hideFullscreenSpaces{"hideFullscreenSpaces", false, Pane::overview,
                                                      "Hide full-screen Spaces in the overview."};
inline constexpr SettingOf<bool> showAppIcons{"showAppIcons", true, Pane::overview,
                                              "Show app icons on the overview tiles."};
inline constexpr SettingOf<std::string> switchSound{"switchSound", "", Pane::appearance,
                                                    "System sound played on every switch; empty plays nothing."};
inline constexpr SettingOf<bool> speakSpaceNames{"speakSpaceNames", false, Pane::appearance,
                                                 "Speak the Space's name on every switch."};
inline constexpr SettingOf<HUDPosition> hudPosition{"hudPosition", HUDPosition::top, Pane::appearance,
                                                    "Where the pop-up stands."};
inline constexpr SettingOf<HUDSize> hudSize{"hudSize", HUDSize::regular, Pane::appearance, "Size of the pop-up."};
inline constexpr SettingOf<HotCorner> hotCorner{"hotCorner", HotCorner::none, Pane::overview,
                                                "Screen corner that opens the overview."};
inline constexpr SettingOf<bool> notchHover{"notchHover", false, Pane::overview,
                                            "Rest the pointer on the notch to show Spaces."};
inline constexpr SettingOf<bool> menuBarScrollSwitches{"menuBarScrollSwitches", true, Pane::appearance,
                                                       "Scrolling over the menu-bar item switches Spaces."};
inline constexpr SettingOf<bool> floatingToolbar{"floatingToolbar", false, Pane::appearance,
                                                 "Show the floating toolbar."};
inline constexpr SettingOf<bool> desktopLabel{"desktopLabel", false, Pane::appearance,
                                              "Show the Space's name on the desktop."};
inline constexpr SettingOf<DesktopLabelPosition> desktopLabelPosition{
    "desktopLabelPosition", DesktopLabelPosition::bottomLeft, Pane::appearance, "Where the desktop label stands."};
inline constexpr SettingOf<bool> dockClickProtection{"dockClickProtection", false, Pane::general,
                                                     "Undo a Space jump caused by a Dock click."};
inline constexpr SettingOf<bool> timeTracking{"timeTracking", true, Pane::statistics,
                                              "Track time spent in each Space."};
inline constexpr SettingOf<bool> runAutomations{"runAutomations", true, Pane::general,
                                                "Run the automations of Spaces."};
inline constexpr SettingOf<bool> followMovedWindow{"followMovedWindow", false, Pane::general,
                                                   "Follow a window after moving it to another Space."};
inline constexpr SettingOf<bool> backAndForth{"backAndForth", true, Pane::shortcuts,
                                              "Switching to the active Space goes back to the previous one."};
inline constexpr SettingOf<bool> autoNameSpaces{
    "autoNameSpaces", false, Pane::general,
    "Name unnamed Spaces after the desktop's own name or the application with most windows."};
inline constexpr SettingOf<bool> restoreFocus{"restoreFocus", true, Pane::windows,
                                              "Refocus the last focused window on entering a Space."};
inline constexpr SettingOf<bool> spaceLock{"spaceLock", false, Pane::windows,
                                           "Stay on the Space when an app would pull you to another one."};
inline constexpr SettingOf<bool> applyAppRules{"applyAppRules", true, Pane::windows,
                                               "Move new windows of an app to the Space that pins it."};
inline constexpr SettingOf<bool> autoSaveLayout{"autoSaveLayout", true, Pane::windows,
                                                "Save window layouts automatically."};
inline constexpr SettingOf<bool> restoreOnDisplayReconnect{"restoreOnDisplayReconnect", true, Pane::windows,
                                                           "Restore window places when a display set returns."};
inline constexpr SettingOf<std::int64_t> gridColumns{
    "gridColumns", 0, Pane::shortcuts, "Columns of the Space grid used by up and down stepping; 0 is no grid."};
inline constexpr SettingOf<bool> groupOverview{"groupOverview", true, Pane::overview,
                                               "Group the overview by category."};
inline constexpr SettingOf<std::string> scratchpadApp{"scratchpadApp", "", Pane::windows,
                                                      "App shown and hidden by the scratchpad command."};
inline constexpr SettingOf<bool> spaceDock{"spaceDock", false, Pane::windows, "Show the Space dock."};
inline constexpr SettingOf<bool> fourFingerTap{"fourFingerTap", false, Pane::general,
                                               "Four-finger tap on the trackpad opens the overview."};
inline constexpr SettingOf<bool> localAPI{"localAPI", false, Pane::general,
                                          "Let other programs on this machine read the Spaces and send commands."};
inline constexpr SettingOf<std::string> activeProfile{"activeProfile", "", Pane::none, "Name of the profile in use.",
                                                      Exported::no};
// Without a registered default.
inline constexpr SettingOf<std::vector<std::string>> overviewOrder{"overviewOrder", std::nullopt, Pane::none,
                                                                   "Arrangement of the overview's tiles."};
inline constexpr SettingOf<std::map<std::string, std::string>> shortcuts{
    "shortcuts", std::nullopt, Pane::shortcuts,
    "Key combinations of your own, such as \"ctrl+alt+m\", with the words or the URL that each stands for.",
    Exported::no};
inline constexpr SettingOf<std::vector<std::string>> toldShortcuts{
    "toldShortcuts", std::nullopt, Pane::none, "Shortcuts that have been reported as taken by other programs.",
    Exported::no};
inline constexpr SettingOf<std::map<std::string, std::string>> profileByDisplaySetup{
    "profileByDisplaySetup", std::nullopt, Pane::none, "Which profile to use for which display set.", Exported::no};
inline constexpr SettingOf<std::vector<std::string>> recentSpaceNames{
    "recentSpaceNames", std::nullopt, Pane::none, "Names given recently, newest first.", Exported::no};
inline constexpr SettingOf<bool> demoMode{"demoMode", std::nullopt, Pane::none, "Demonstration mode with sample names.",
                                          Exported::no};

}  // namespace setting

/// All settings in their order: first those with a registered default, then those without. Any thread.
[[nodiscard]] std::span<const Setting> settingsTable();

/// The setting with this key; null when there is none.
[[nodiscard]] const Setting* findSetting(std::string_view key);

/// The value if it has the setting's type (a real may be written as an integer); nothing otherwise. A text that names
/// no case of its enumeration still is a text.
[[nodiscard]] std::optional<PropertyList> valueOfType(SettingType type, const PropertyList& value);

/// For messages: "a boolean", "a list of texts".
[[nodiscard]] std::string_view nameOfType(SettingType type);

/// Reads a setting's value as a person writes it: true or false, a number, a text as it stands, or a JSON list or
/// object of texts. The error is a sentence that says what would be right.
[[nodiscard]] std::expected<PropertyList, std::string> settingFromText(const Setting& setting, std::string_view text);

/// The value in the same form; texts stand as they are, and one that names no case is given as the case it reads as.
[[nodiscard]] std::string textOfSetting(const Setting& setting, const PropertyList& value);

/// For an unknown key: a sentence that names it, with the nearest known key where one is close.
[[nodiscard]] std::string unknownSettingMessage(std::string_view key);

}  // namespace tallowin
