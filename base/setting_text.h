#pragma once

#include <expected>
#include <string>
#include <string_view>

#include "base/settings_table.h"

namespace tallowin {

/// Reads a setting's value as a person writes it: true or false, a number, a text as it stands, or a JSON list or
/// object of texts. The error is a sentence that says what would be right.
[[nodiscard]] std::expected<PropertyList, std::string> settingFromText(const Setting& setting, std::string_view text);

/// The value in the same form; texts stand as they are, and one that names no case is given as the case it reads as.
[[nodiscard]] std::string textOfSetting(const Setting& setting, const PropertyList& value);

/// For an unknown key: a sentence that names it, with the nearest known key where one is close.
[[nodiscard]] std::string unknownSettingMessage(std::string_view key);

}  // namespace tallowin
