#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/desktop.h"

namespace tallowin {

/// What made the Dock switch.
enum class SwitchCause { gesture, hotKey, missionControl };

/// What the Dock and Mission Control do to the desktop. Main thread only.
class DesktopOperations {
 public:
  virtual ~DesktopOperations() = default;

  /// The displays in the window server's order, as they are now.
  virtual std::vector<DesktopDisplay> displays() = 0;

  /// The identifier of the display that holds the pointer; nothing when none does.
  virtual std::optional<std::string> displayUnderPointer() = 0;

  /// Begins to show a Space on its display. May take its time; a Space that is gone is ignored.
  virtual void switchTo(ManagedSpaceID space, SwitchCause cause) = 0;

  /// Adds a desktop at the right end of a display's ordinary desktops. False when the platform refuses.
  virtual bool addDesktop(const std::string& display) = 0;

  /// Removes a desktop; its windows go to a neighbour. False when the platform refuses, as for the last one.
  virtual bool removeDesktop(ManagedSpaceID space) = 0;
};

}  // namespace tallowin
