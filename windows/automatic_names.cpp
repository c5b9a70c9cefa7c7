#include "windows/automatic_names.h"

#include <algorithm>
#include <tuple>

namespace tallowin {

AutomaticNames::AutomaticNames(const ProgramServices& services, SpaceContents& contents)
    : services_(services), contents_(contents) {
  services_.store.autoNameProvider = [this](const Space& space) { return name(space); };
  observers_.add(contents_.appsBySpace().observeDidChange([this](const AppsBySpace&) { lookSoon(); }));
  observers_.add(services_.desktopNames.observeOwnNames([this] { lookSoon(); }));
}

void AutomaticNames::lookSoon() {
  soon_ = services_.mainQueue.after(Duration::zero(), [this] { look(); });
}

void AutomaticNames::look() {
  std::map<std::string, std::string> names;
  if (services_.settings.get(setting::autoNameSpaces)) {
    for (const auto& space : services_.watcher.latest().allSpaces()) {
      names.emplace(space.id, services_.store.displayName(space));
    }
  }
  if (std::exchange(names_, names) != names && onChange) {
    onChange();
  }
}

std::optional<std::string> AutomaticNames::name(const Space& space) const {
  if (auto own = ownName(space)) {
    return own;
  }
  const auto apps = contents_.apps(space.managedID);
  if (apps.empty()) {
    return std::nullopt;
  }
  const auto most = std::ranges::max_element(apps, [](const AppOnSpace& a, const AppOnSpace& b) {
    return std::tuple(a.windowIDs.size(), std::string_view(b.name)) <
           std::tuple(b.windowIDs.size(), std::string_view(a.name));
  });
  return most->name;
}

/// A name that the user gave lately was written there by this program, before the desktop system was started anew.
std::optional<std::string> AutomaticNames::ownName(const Space& space) const {
  const auto& names = services_.desktopNames.ownNames();
  const auto found = names.find(space.managedID);
  if (found == names.end()) {
    return std::nullopt;
  }
  const auto given = services_.settings.get(setting::recentSpaceNames);
  return std::ranges::find(given, found->second) == given.end() ? std::optional(found->second) : std::nullopt;
}

}  // namespace tallowin
