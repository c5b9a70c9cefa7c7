#include "automation/automatic_profile.h"

#include "windows/display_set.h"

namespace tallowin {

namespace {

constexpr auto choicesKey = "profileByDisplaySetup";

}  // namespace

std::string AutomaticProfile::key(const SpaceSnapshot& snapshot) const {
  return connectedDisplays(services_.displays, snapshot).key();
}

void AutomaticProfile::look(const SpaceSnapshot& snapshot) {
  const auto now = key(snapshot);
  // No displays at all are displays that sleep.
  if (now.empty() || now == lastKey_) {
    return;
  }
  lastKey_ = now;
  const auto choice = chosen(snapshot);
  const auto profile = choice ? services_.profiles.named(*choice) : std::nullopt;
  // The stored name counts: activating the active profile again would undo the edits since it was saved.
  if (profile && profile->name != services_.settings.text("activeProfile")) {
    services_.commands.use(profile->name);
  }
}

std::optional<std::string> AutomaticProfile::chosen(const SpaceSnapshot& snapshot) const {
  const auto choices = services_.settings.profileByDisplaySetup();
  const auto found = choices.find(key(snapshot));
  return found != choices.end() ? std::optional(found->second) : std::nullopt;
}

bool AutomaticProfile::choose(const std::optional<std::string>& profile, const SpaceSnapshot& snapshot) {
  auto choices = services_.settings.profileByDisplaySetup();
  if (profile) {
    choices[key(snapshot)] = *profile;
  } else {
    choices.erase(key(snapshot));
  }
  return services_.settings.defaults().setObject(choicesKey, choices);
}

}  // namespace tallowin
