#pragma once

#include <string_view>

#include "platform/desktop.h"

namespace tallowin {

/// The sentences for the user that depend on the kind of the desktop.
struct DesktopTexts {
  std::string_view windowNotMoved;
  std::string_view noWayToAdd;     ///< nothing was there that adds desktops
  std::string_view noWayToRemove;  ///< nothing was there that removes desktops
  std::string_view noAddButton;    ///< adding has been begun, but has nothing to press
  std::string_view desktopNotFound;
  std::string_view beforeRestart;     ///< follows the number of windows that a layout has
  std::string_view askToAdd;          ///< follows the number of desktops that a template has set up
  std::string_view addAndApplyAgain;  ///< follows the number of desktops that a template lacks
};

/// Those of a kind of desktop. They last as long as the program.
[[nodiscard]] const DesktopTexts& desktopTexts(DesktopKind kind);

}  // namespace tallowin
