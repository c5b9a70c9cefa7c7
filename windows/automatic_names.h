#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>

#include "base/subscriptions.h"
#include "core/program_services.h"
#include "platform/pinned.h"
#include "windows/space_contents.h"

namespace tallowin {

/// Names ordinary Spaces that the user has not named, while the setting "autoNameSpaces" is on: as the desktop system
/// itself calls them, else after the application with most windows there (the first by name of several). Main thread
/// only.
class AutomaticNames : Pinned {
 public:
  /// Gives the store the names from now on.
  AutomaticNames(const ProgramServices& services, SpaceContents& contents);
  ~AutomaticNames() { services_.store.autoNameProvider = nullptr; }

  /// Told when names of Spaces in the latest snapshot have become others.
  std::function<void()> onChange;

  /// Looks for such a change in the next turn of the main queue. To be called when settings have changed.
  void lookSoon();

 private:
  [[nodiscard]] std::optional<std::string> name(const Space& space) const;
  [[nodiscard]] std::optional<std::string> ownName(const Space& space) const;
  void look();

  const ProgramServices& services_;
  SpaceContents& contents_;
  std::map<std::string, std::string> names_;  ///< by Space id, as last looked at
  WorkItem soon_;
  Subscriptions observers_;
};

}  // namespace tallowin
