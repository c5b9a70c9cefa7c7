#include "base/settings.h"

namespace tallowin {

void Settings::impose(const Setting& setting, PropertyList value) {
  imposed_.insert_or_assign(setting.key, std::move(value));
}

std::optional<PropertyList> Settings::value(const Setting& setting) const {
  if (const auto imposed = imposed_.find(setting.key); imposed != imposed_.end()) {
    return imposed->second;
  }
  if (const auto stored = preferences_.objectForKey(setting.key)) {
    if (auto typed = valueOfType(setting.type, *stored)) {
      return typed;
    }
  }
  auto standard = areDefaultsRegistered_ ? setting.registeredDefault() : nullptr;
  return standard.is_null() ? std::nullopt : std::optional(std::move(standard));
}

}  // namespace tallowin
