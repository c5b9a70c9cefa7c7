#include "app/settings_mode.h"

#include <iomanip>

#include "base/settings_table.h"
#include "commands/outcome.h"

namespace tallowin {

namespace {

int usageError(std::ostream& error, const std::string& message) {
  error << "tallowin: " << message << '\n';
  return exit_status::usage;
}

/// Says why the user's values are not what is shown, where they cannot be read.
void reportFault(const Settings& settings, std::ostream& error) {
  if (const auto fault = settings.defaults().fault()) {
    error << "tallowin: " << *fault << '\n';
  }
}

int notStored(std::ostream& error, const std::string& key) {
  error << "tallowin: the setting " << key << " could not be stored; the log says why\n";
  return exit_status::cannotCreate;
}

}  // namespace

int listSettings(const Settings& settings, std::ostream& out, std::ostream& error) {
  reportFault(settings, error);
  const auto stored = settings.defaults().persistentDomain();
  for (const auto& setting : settingsTable()) {
    const auto value = settings.value(setting);
    const auto found = stored.find(std::string(setting.key));
    const bool setByUser = found != stored.end() && valueOfType(setting.type, found->second).has_value();
    constexpr int keyWidth = 26;
    constexpr int valueWidth = 14;
    out << (setByUser ? "* " : "  ") << std::left << std::setw(keyWidth) << setting.key << std::setw(valueWidth)
        << (value ? textOfSetting(setting, *value) : "") << ' ' << setting.sentence;
    for (const auto& name : setting.cases) {
      out << (&name == setting.cases.data() ? " (" : ", ") << name;
    }
    out << (setting.cases.empty() ? "\n" : ")\n");
  }
  return exit_status::success;
}

int getSetting(const Settings& settings, const std::string& key, std::ostream& out, std::ostream& error) {
  const auto* setting = findSetting(key);
  if (setting == nullptr) {
    return usageError(error, unknownSettingMessage(key));
  }
  reportFault(settings, error);
  const auto value = settings.value(*setting);
  if (!value) {
    return exit_status::failure;
  }
  out << textOfSetting(*setting, *value) << '\n';
  return exit_status::success;
}

int setSetting(const Settings& settings, const std::string& key, const std::string& value, std::ostream& error) {
  const auto* setting = findSetting(key);
  if (setting == nullptr) {
    return usageError(error, unknownSettingMessage(key));
  }
  const auto read = settingFromText(*setting, value);
  if (!read) {
    return usageError(error, read.error());
  }
  reportFault(settings, error);
  return settings.defaults().setObject(key, *read) ? exit_status::success : notStored(error, key);
}

int unsetSetting(const Settings& settings, const std::string& key, std::ostream& error) {
  if (findSetting(key) == nullptr) {
    return usageError(error, unknownSettingMessage(key));
  }
  return settings.defaults().removeObject(key) ? exit_status::success : notStored(error, key);
}

}  // namespace tallowin
