#pragma once

#include <array>
#include <string_view>
#include <utility>

#include "base/settings_table.h"

namespace tallowin {

/// The parts of a list of settings, in order, with their titles.
inline constexpr std::array<std::pair<SettingsPane, std::string_view>, 7> settingsPanes = {{
    {SettingsPane::general, "General"},
    {SettingsPane::windows, "Windows"},
    {SettingsPane::shortcuts, "Shortcuts"},
    {SettingsPane::appearance, "Appearance"},
    {SettingsPane::overview, "Overview"},
    {SettingsPane::statistics, "Statistics"},
    {SettingsPane::none, "Kept by the program"},
}};

}  // namespace tallowin
