#include "automation/automatic_profile.h"

#include "windows/display_set.h"

namespace tallowin {

std::string AutomaticProfile::key(const SpaceSnapshot& snapshot) const {
  return connectedDisplays(services_.displays, snapshot).key();
}

void AutomaticProfile::displaysChanged(const SpaceSnapshot& snapshot) {
  const auto choice = chosen(snapshot);
  if (choice && *choice != services_.settings.get(setting::activeProfile) && services_.profiles.named(*choice)) {
    services_.commands.use(*choice);
  }
}

std::optional<std::string> AutomaticProfile::chosen(const SpaceSnapshot& snapshot) const {
  const auto choices = services_.settings.get(setting::profileByDisplaySetup);
  const auto found = choices.find(key(snapshot));
  return found != choices.end() ? std::optional(found->second) : std::nullopt;
}

bool AutomaticProfile::choose(const std::optional<std::string>& profile, const SpaceSnapshot& snapshot) {
  auto choices = services_.settings.get(setting::profileByDisplaySetup);
  if (profile) {
    choices[key(snapshot)] = *profile;
  } else {
    choices.erase(key(snapshot));
  }
  return services_.settings.set(setting::profileByDisplaySetup, choices);
}

}  // namespace tallowin
