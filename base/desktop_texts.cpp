#include "base/desktop_texts.h"

namespace tallowin {

const DesktopTexts& desktopTexts(DesktopKind kind) {
  static constexpr DesktopTexts driven = {.windowNotMoved = "macOS did not move the window.",
                                          .noWayToAdd = "Mission Control could not be opened.",
                                          .noWayToRemove = "Mission Control could not be opened.",
                                          .noAddButton = "Mission Control's add-desktop button was not found.",
                                          .desktopNotFound = "That desktop was not found in Mission Control.",
                                          .beforeRestart = " windows were before your Mac restarted.",
                                          .askToAdd = " desktops. Add the rest now? Mission Control will open briefly.",
                                          .addAndApplyAgain = " more desktops in Mission Control, then apply again."};
  static constexpr DesktopTexts asked = {.windowNotMoved = "The window manager did not move the window.",
                                         .noWayToAdd = "This window manager does not let desktops be added.",
                                         .noWayToRemove = "This window manager does not let desktops be removed.",
                                         .noAddButton = "This window manager does not let desktops be added.",
                                         .desktopNotFound = "That desktop was not found.",
                                         .beforeRestart = " windows were before your computer restarted.",
                                         .askToAdd = " desktops. Add the rest now?",
                                         .addAndApplyAgain = " more desktops, then apply again."};
  return kind == DesktopKind::driven ? driven : asked;
}

}  // namespace tallowin
