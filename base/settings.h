#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include "base/preferences.h"
#include "base/settings_table.h"

namespace tallowin {

/// The program's settings: what the user has set, else what is registered. Nothing is cached, so a change takes effect
/// at the next read, one by others in the next turn of the main queue. A stored value of the wrong type reads as not
/// set. Main thread only.
class Settings {
 public:
  explicit Settings(Preferences& preferences) : preferences_(preferences) {}

  /// Registers the table's defaults. They are not written anywhere. Called once, before any setting is read.
  void registerDefaults() { areDefaultsRegistered_ = true; }

  /// Gives the setting this value for as long as the process lives, whatever is stored. It is not written anywhere.
  void impose(const Setting& setting, PropertyList value);

  /// The setting's value, of its type; nothing when it is neither set nor registered.
  [[nodiscard]] std::optional<PropertyList> value(const Setting& setting) const;

  /// The setting's value; without one false, 0, an empty text, list or map. A text that names no case reads as its
  /// enumeration says.
  template <typename Value>
  [[nodiscard]] Value get(const SettingOf<Value>& setting) const {
    const auto found = value(setting);
    if constexpr (std::is_enum_v<Value>) {
      return caseOfStoredText<Value>(found ? found->template get<std::string>() : "");
    } else {
      return found ? found->template get<Value>() : Value();
    }
  }

  /// Stores a value for the user, with the result of Preferences::setObject().
  template <typename Value>
  bool set(const SettingOf<Value>& setting, const std::type_identity_t<Value>& value) const {
    if constexpr (std::is_enum_v<Value>) {
      return preferences_.setObject(setting.key, storedText(value));
    } else {
      return preferences_.setObject(setting.key, value);
    }
  }

  /// The store behind the settings, for whoever writes one.
  [[nodiscard]] Preferences& defaults() const { return preferences_; }

 private:
  Preferences& preferences_;
  bool areDefaultsRegistered_ = false;
  std::map<std::string_view, PropertyList> imposed_;  ///< by key
};

}  // namespace tallowin
