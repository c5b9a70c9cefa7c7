#pragma once

#include <functional>

#include "app/window_services.h"
#include "commands/space_command.h"
#include "core/space_watcher.h"

namespace tallowin {

/// The user's commands about windows and desktops, with what the user is told of them. Each works on the windows as
/// they are now. Main thread only.
class WindowCommands {
 public:
  struct Services {
    WindowServices& windows;
    SpaceWatcher& watcher;
    SpaceStore& store;
    SpaceSwitcher& switcher;
    Workspace& workspace;
    const Settings& settings;
    Toasts& toasts;
  };

  explicit WindowCommands(Services services) : services_(services) {}

  /// Moves the front window to a Space.
  void moveFrontWindow(const Space& target);
  /// Moves it to the Space beside the active one of the display under the mouse.
  void moveFrontWindowStep(bool right);

  void saveLayout();
  void restoreLayout();
  void eject();

  void toggleScratchpad();
  /// Minimises the windows of the current Space, or brings back what was minimised last.
  void minimizeAll();
  void undoMinimize();
  /// Saves the current Space and closes its windows.
  void saveAndClose();

  void addDesktop();
  void removeDesktop(const Space& space);

 private:
  [[nodiscard]] const SpaceSnapshot& snapshot() const { return services_.watcher.snapshot().get(); }
  [[nodiscard]] SpaceManagement::Completion tellFailure() const;
  void fail(std::string_view message) const;

  const Services services_;
};

}  // namespace tallowin
