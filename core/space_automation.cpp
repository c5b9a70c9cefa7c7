#include "core/space_automation.h"

#include "base/record_reader.h"

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

}  // namespace tallowin
