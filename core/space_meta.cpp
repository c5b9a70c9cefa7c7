#include "core/space_meta.h"

#include "base/property_list_reading.h"

namespace tallowin {

namespace {

struct TextMember {
  const char* key;
  std::optional<std::string> SpaceAutomation::* member;
};
struct FlagMember {
  const char* key;
  bool SpaceAutomation::* member;
};
struct ListMember {
  const char* key;
  std::vector<std::string> SpaceAutomation::* member;
};

constexpr TextMember textMembers[] = {
    {"shortcutOnEnter", &SpaceAutomation::shortcutOnEnter},   {"shortcutOnLeave", &SpaceAutomation::shortcutOnLeave},
    {"scriptOnEnter", &SpaceAutomation::scriptOnEnter},       {"scriptOnLeave", &SpaceAutomation::scriptOnLeave},
    {"keystrokeOnEnter", &SpaceAutomation::keystrokeOnEnter}, {"browserApp", &SpaceAutomation::browserApp},
    {"browserProfile", &SpaceAutomation::browserProfile},
};
constexpr FlagMember flagMembers[] = {
    {"launchOnce", &SpaceAutomation::launchOnce},
    {"launchOnlyIfEmpty", &SpaceAutomation::launchOnlyIfEmpty},
    {"hideOtherApps", &SpaceAutomation::hideOtherApps},
};
constexpr ListMember listMembers[] = {
    {"launchApps", &SpaceAutomation::launchApps},
    {"openURLs", &SpaceAutomation::openURLs},
    {"pinnedApps", &SpaceAutomation::pinnedApps},
};

struct MetaText {
  const char* key;
  std::optional<std::string> SpaceMeta::* member;
};

constexpr MetaText metaTexts[] = {
    {"name", &SpaceMeta::name}, {"symbol", &SpaceMeta::symbol},     {"colorHex", &SpaceMeta::colorHex},
    {"note", &SpaceMeta::note}, {"iconFile", &SpaceMeta::iconFile}, {"group", &SpaceMeta::group},
};
constexpr auto automationKey = "automation";

PropertyList metaToJson(const SpaceMeta& meta) {
  auto json = meta.others;
  for (const auto& [key, member] : metaTexts) {
    if (const auto& value = meta.*member) {
      json[key] = *value;
    }
  }
  if (meta.automation) {
    json[automationKey] = toJson(*meta.automation);
  }
  return json;
}

std::optional<SpaceMeta> metaFromJson(const PropertyList& json) {
  RecordReader reader(json);
  if (!reader.good()) {
    return std::nullopt;
  }
  SpaceMeta meta;
  meta.others = json;
  for (const auto& [key, member] : metaTexts) {
    meta.*member = reader.text(key);
    meta.others.erase(key);
  }
  if (const auto* automation = reader.member(automationKey)) {
    meta.automation = automationFromJson(*automation);
    if (!meta.automation) {
      reader.fail();
    }
  }
  meta.others.erase(automationKey);
  return reader.good() ? std::optional(std::move(meta)) : std::nullopt;
}

}  // namespace

PropertyList toJson(const SpaceAutomation& automation) {
  auto json = PropertyList::object();
  for (const auto& [key, member] : textMembers) {
    if (const auto& value = automation.*member) {
      json[key] = *value;
    }
  }
  for (const auto& [key, member] : flagMembers) {
    json[key] = automation.*member;
  }
  for (const auto& [key, member] : listMembers) {
    json[key] = automation.*member;
  }
  return json;
}

std::optional<SpaceAutomation> automationFromJson(const PropertyList& json) {
  RecordReader reader(json);
  SpaceAutomation automation;
  for (const auto& [key, member] : textMembers) {
    automation.*member = reader.text(key);
  }
  for (const auto& [key, member] : flagMembers) {
    automation.*member = reader.boolean(key);
  }
  for (const auto& [key, member] : listMembers) {
    automation.*member = reader.textList(key);
  }
  return reader.good() ? std::optional(std::move(automation)) : std::nullopt;
}

PropertyList toJson(const SpaceMetas& metas) {
  auto json = PropertyList::object();
  for (const auto& [key, meta] : metas) {
    json[key] = metaToJson(meta);
  }
  return json;
}

std::optional<SpaceMetas> metasFromJson(const PropertyList& json) {
  if (!json.is_object()) {
    return std::nullopt;
  }
  SpaceMetas metas;
  for (const auto& [key, value] : json.items()) {
    auto meta = metaFromJson(value);
    if (!meta) {
      return std::nullopt;
    }
    metas.emplace_hint(metas.end(), key, *std::move(meta));
  }
  return metas;
}

}  // namespace tallowin
