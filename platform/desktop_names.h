#pragma once

#include <functional>
#include <map>
#include <string>

#include "platform/identifiers.h"
#include "platform/subscription.h"

namespace tallowin {

/// Shows the user's names of Spaces where the desktop system itself names them: in pagers and bars. Main thread only.
class DesktopNames {
 public:
  virtual ~DesktopNames() = default;

  /// The names that the user gave, by managed id of the Space; every other Space keeps the desktop system's own name.
  /// They take the place of the names published before, are remembered, and are shown again when the desktop changes.
  virtual void publish(const std::map<ManagedSpaceID, std::string>& names) = 0;

  /// The desktop system's own names, by managed id, of those Spaces that it has a name for beyond a default: its
  /// number, or what it calls all of them with their numbers behind. Names that were published are none of them.
  [[nodiscard]] virtual const std::map<ManagedSpaceID, std::string>& ownNames() = 0;

  /// Calls `observer` when ownNames() may have become others.
  virtual Subscription observeOwnNames(std::function<void()> observer) = 0;
};

}  // namespace tallowin
