#include "platform/simulated/preferences_file.h"

#include "base/json_text.h"

namespace tallowin {

void PreferencesFile::use(const std::filesystem::path& path) {
  path_ = path;
  if (!initial_.empty()) {
    write(initial_);
  }
}

void PreferencesFile::set(const std::string& key, const PropertyList& value) {
  auto preferences = read();
  preferences[key] = value;
  write(preferences);
}

void PreferencesFile::remove(const std::string& key) {
  auto preferences = read();
  preferences.erase(key);
  write(preferences);
}

PropertyList PreferencesFile::read() {
  const auto parsed = parseJSON(files_.read(path_).value_or(""));
  return parsed && parsed->is_object() ? *parsed : PropertyList::object();
}

void PreferencesFile::write(const PropertyList& preferences) {
  if (!path_.empty()) {
    files_.overwrite(path_, prettyJSON(preferences));
  }
}

}  // namespace tallowin
