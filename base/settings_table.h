#pragma once

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "platform/property_list.h"

namespace tallowin {

enum class SettingType { boolean, real, integer, text, textList, textMap };

/// The pane of the settings window that a setting stands in; `none` for those that the program keeps for itself.
enum class SettingsPane { none, general, windows, shortcuts, appearance, overview, statistics };

/// One setting, declared once.
struct Setting {
  std::string_view key;
  SettingType type;
  /// Registered at start-up and answered while the user has not set the key; null for a setting without a default.
  PropertyList registeredDefault;
  SettingsPane pane;
  /// What it does, as one sentence for people.
  std::string_view sentence;
  /// For a text that names a case: the texts allowed. Empty for every other setting.
  std::span<const std::string_view> cases = {};
  /// What a text that names no case reads as.
  std::string_view fallback = {};
};

/// All settings in their order: first those with a registered default, then those without. Any thread.
[[nodiscard]] const std::vector<Setting>& settingsTable();

/// The setting with this key; null when there is none.
[[nodiscard]] const Setting* findSetting(std::string_view key);

/// The value if it has the setting's type (a real may be written as an integer); nothing otherwise. A text that names
/// no case of its enumeration still is a text.
[[nodiscard]] std::optional<PropertyList> valueOfType(SettingType type, const PropertyList& value);

/// For messages: "a boolean", "a list of texts".
[[nodiscard]] std::string_view nameOfType(SettingType type);

}  // namespace tallowin
