#include "base/settings.h"

namespace tallowin {

namespace {

template <typename Value>
Value valueOr(const std::optional<PropertyList>& value, Value fallback) {
  return value ? value->get<Value>() : fallback;
}

}  // namespace

void Settings::registerDefaults() {
  for (const auto& setting : settingsTable()) {
    if (!setting.registeredDefault.is_null()) {
      registered_.emplace(setting.key, setting.registeredDefault);
    }
  }
}

void Settings::impose(std::string_view key, PropertyList value) {
  imposed_.insert_or_assign(std::string(key), std::move(value));
}

std::optional<PropertyList> Settings::value(std::string_view key) const {
  if (const auto imposed = imposed_.find(key); imposed != imposed_.end()) {
    return imposed->second;
  }
  const auto* setting = findSetting(key);
  if (setting == nullptr) {
    return std::nullopt;
  }
  if (const auto stored = preferences_.objectForKey(key)) {
    if (auto typed = valueOfType(setting->type, *stored)) {
      return typed;
    }
  }
  const auto found = registered_.find(key);
  return found != registered_.end() ? std::optional(found->second) : std::nullopt;
}

bool Settings::boolean(std::string_view key) const {
  return valueOr(value(key), false);
}

double Settings::real(std::string_view key) const {
  return valueOr(value(key), 0.0);
}

std::int64_t Settings::integer(std::string_view key) const {
  return valueOr(value(key), std::int64_t{0});
}

std::string Settings::text(std::string_view key) const {
  return valueOr(value(key), std::string());
}

std::vector<std::string> Settings::textList(std::string_view key) const {
  return valueOr(value(key), std::vector<std::string>());
}

std::map<std::string, std::string> Settings::profileByDisplaySetup() const {
  return valueOr(value("profileByDisplaySetup"), std::map<std::string, std::string>());
}

SwitchMode Settings::switchMode() const {
  return caseOfStoredText<SwitchMode>(text("switchMode"));
}

DesktopShortcutModifier Settings::desktopShortcutModifier() const {
  return caseOfStoredText<DesktopShortcutModifier>(text("desktopShortcutModifier"));
}

OverlayHotKeyPreset Settings::overlayHotKey() const {
  return caseOfStoredText<OverlayHotKeyPreset>(text("overlayHotKey"));
}

HUDPosition Settings::hudPosition() const {
  return caseOfStoredText<HUDPosition>(text("hudPosition"));
}

DesktopLabelPosition Settings::desktopLabelPosition() const {
  return caseOfStoredText<DesktopLabelPosition>(text("desktopLabelPosition"));
}

HUDSize Settings::hudSize() const {
  return caseOfStoredText<HUDSize>(text("hudSize"));
}

MenuBarStyle Settings::menuBarStyle() const {
  return caseOfStoredText<MenuBarStyle>(text("menuBarStyle"));
}

HotCorner Settings::hotCorner() const {
  return caseOfStoredText<HotCorner>(text("hotCorner"));
}

}  // namespace tallowin
