#pragma once

#include <map>
#include <string>

#include "platform/shown_space.h"

namespace tallowin {

/// The name of the Space on the desktop itself, while the setting "desktopLabel" is on. Main thread only.
class DesktopLabel {
 public:
  virtual ~DesktopLabel() = default;

  /// `active` are the active Spaces by the identifiers of their displays.
  virtual void update(const std::map<std::string, ShownSpace>& active) = 0;
};

}  // namespace tallowin
