#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "platform/identifiers.h"

namespace tallowin {

/// One Space as the Dock sees it.
struct DockSpace {
  ManagedSpaceID id = 0;
  bool ordinary = true;  ///< a desktop, not an application's full-screen Space
  bool operator==(const DockSpace&) const = default;
};

/// The Spaces of one display, left to right.
struct DesktopRow {
  std::string display;  ///< display identifier
  std::vector<DockSpace> spaces;
  std::optional<ManagedSpaceID> active;
  bool operator==(const DesktopRow&) const = default;
};

/// What made the Dock switch.
enum class SwitchCause { gesture, hotKey, missionControl };

/// What the Dock and Mission Control do to the desktop. Main thread only.
class DesktopOperations {
 public:
  virtual ~DesktopOperations() = default;

  /// The displays in the window server's order, as they are now.
  virtual std::vector<DesktopRow> rows() = 0;

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
