#include "automation/profile_commands.h"

#include "base/date_text.h"
#include "base/unicode.h"

namespace tallowin {

Outcome ProfileCommands::use(const std::string& name) {
  const auto stored = profiles_.activate(name);
  if (!stored) {
    const auto message = "No profile is called " + name;
    toasts_.show({message, std::nullopt, true});
    return Outcome::refused(message);
  }
  toasts_.show({"Profile: " + *stored, "person.crop.rectangle.stack"});
  return Outcome::done();
}

std::string profileList(const std::vector<std::string>& names, const std::string& active) {
  std::string text;
  for (const auto& name : names) {
    text += (name == active ? "* " : "  ") + printable(name) + '\n';
  }
  return text;
}

PropertyList profileRecords(const std::vector<SpaceProfile>& profiles, const std::string& active) {
  auto records = PropertyList::array();
  for (const auto& profile : profiles) {
    records.push_back(
        {{"name", profile.name}, {"savedAt", iso8601(profile.savedAt)}, {"isActive", profile.name == active}});
  }
  return records;
}

}  // namespace tallowin
