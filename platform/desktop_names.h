#pragma once

#include <map>
#include <string>

#include "platform/identifiers.h"

namespace tallowin {

/// Shows the user's names of Spaces where the desktop system itself names them: in pagers and bars. Main thread only.
class DesktopNames {
 public:
  virtual ~DesktopNames() = default;

  /// The names that the user gave, by managed id of the Space; every other Space keeps the desktop system's own name.
  /// They take the place of the names published before, are remembered, and are shown again when the desktop changes.
  virtual void publish(const std::map<ManagedSpaceID, std::string>& names) = 0;
};

}  // namespace tallowin
