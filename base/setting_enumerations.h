#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

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

/// Whether the menu-bar item shows every Space and not only the active one.
[[nodiscard]] constexpr bool showsAllSpaces(MenuBarStyle style) {
  return style == MenuBarStyle::strip || style == MenuBarStyle::dots;
}

/// The stored texts of an enumeration's cases in order, and the case that an unknown text reads as. The fallback is
/// deliberately not always the registered default.
template <typename Enumeration>
struct StoredCases;

template <>
struct StoredCases<SwitchMode> {
  static constexpr auto texts = std::to_array<std::string_view>({"instant", "classic"});
  static constexpr auto fallback = SwitchMode::instant;
};

template <>
struct StoredCases<DesktopShortcutModifier> {
  static constexpr auto texts =
      std::to_array<std::string_view>({"off", "controlOption", "controlCommand", "optionCommand", "hyper"});
  static constexpr auto fallback = DesktopShortcutModifier::off;
};

template <>
struct StoredCases<OverlayHotKeyPreset> {
  static constexpr auto texts = std::to_array<std::string_view>(
      {"optionTab", "controlOptionSpace", "optionBacktick", "commandOptionSpace", "f13"});
  static constexpr auto fallback = OverlayHotKeyPreset::optionTab;
};

template <>
struct StoredCases<DesktopLabelPosition> {
  static constexpr auto texts =
      std::to_array<std::string_view>({"bottomLeft", "bottomRight", "topLeft", "topRight", "center"});
  static constexpr auto fallback = DesktopLabelPosition::bottomLeft;
};

template <>
struct StoredCases<HUDSize> {
  static constexpr auto texts = std::to_array<std::string_view>({"small", "regular", "large"});
  static constexpr auto fallback = HUDSize::regular;
};

template <>
struct StoredCases<HUDPosition> {
  static constexpr auto texts = std::to_array<std::string_view>({"top", "center", "bottom"});
  static constexpr auto fallback = HUDPosition::top;
};

template <>
struct StoredCases<MenuBarStyle> {
  static constexpr auto texts =
      std::to_array<std::string_view>({"name", "number", "numberAndName", "iconOnly", "strip", "dots"});
  static constexpr auto fallback = MenuBarStyle::name;
};

template <>
struct StoredCases<HotCorner> {
  static constexpr auto texts =
      std::to_array<std::string_view>({"none", "topLeft", "topRight", "bottomLeft", "bottomRight"});
  static constexpr auto fallback = HotCorner::none;
};

/// The text that a case is stored as.
template <typename Enumeration>
[[nodiscard]] constexpr std::string_view storedText(Enumeration value) {
  return StoredCases<Enumeration>::texts.at(static_cast<std::size_t>(value));
}

/// The case that a stored text reads as; the comparison is exact.
template <typename Enumeration>
[[nodiscard]] constexpr Enumeration caseOfStoredText(std::string_view text) {
  constexpr auto& texts = StoredCases<Enumeration>::texts;
  const auto found = std::ranges::find(texts, text);
  return found == texts.end() ? StoredCases<Enumeration>::fallback : static_cast<Enumeration>(found - texts.begin());
}

}  // namespace tallowin
