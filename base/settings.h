#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/setting_enumerations.h"
#include "base/settings_table.h"
#include "platform/preferences.h"

namespace tallowin {

/// The program's settings: what the user has set, else what is registered. Nothing is cached, so a change takes effect
/// at the next read, one by others in the next turn of the main queue. A stored value of the wrong type reads as not
/// set. Main thread only.
class Settings {
 public:
  explicit Settings(Preferences& preferences) : preferences_(preferences) {}

  /// Registers the table's defaults. They are not written anywhere. Called once, before any setting is read.
  void registerDefaults();

  /// Gives the setting this value for as long as the process lives, whatever is stored. It is not written anywhere.
  void impose(std::string_view key, PropertyList value);

  /// The setting's value, of its type; nothing when it is neither set nor registered, or no such setting exists.
  [[nodiscard]] std::optional<PropertyList> value(std::string_view key) const;

  /// Readers for keys of the table. Without a value they answer false, 0, an empty text, list or map.
  [[nodiscard]] bool boolean(std::string_view key) const;
  [[nodiscard]] double real(std::string_view key) const;
  [[nodiscard]] std::int64_t integer(std::string_view key) const;
  [[nodiscard]] std::string text(std::string_view key) const;
  [[nodiscard]] std::vector<std::string> textList(std::string_view key) const;
  [[nodiscard]] std::map<std::string, std::string> profileByDisplaySetup() const;

  [[nodiscard]] SwitchMode switchMode() const;
  [[nodiscard]] DesktopShortcutModifier desktopShortcutModifier() const;
  [[nodiscard]] OverlayHotKeyPreset overlayHotKey() const;
  [[nodiscard]] HUDPosition hudPosition() const;
  [[nodiscard]] DesktopLabelPosition desktopLabelPosition() const;
  [[nodiscard]] HUDSize hudSize() const;
  [[nodiscard]] MenuBarStyle menuBarStyle() const;
  [[nodiscard]] HotCorner hotCorner() const;

  /// The store behind the settings, for whoever writes one.
  [[nodiscard]] Preferences& defaults() const { return preferences_; }

 private:
  Preferences& preferences_;
  std::map<std::string, PropertyList, std::less<>> registered_;
  std::map<std::string, PropertyList, std::less<>> imposed_;
};

}  // namespace tallowin
