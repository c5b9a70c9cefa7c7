#pragma once

#include "commands/commands_under_way.h"
#include "commands/space_command.h"
#include "core/program_services.h"
#include "windows/window_services.h"

namespace tallowin {

/// The user's commands about windows and desktops, with what the user is told of them. Each works on the windows as
/// they are now. Main thread only.
class WindowCommands {
 public:
  WindowCommands(const ProgramServices& services, SpaceSwitcher& switcher, WindowServices& windows)
      : services_(services), switcher_(switcher), windows_(windows) {}

  /// Moves the front window to a Space; with `follow` the user goes along.
  void moveFrontWindow(const Space& target, bool follow, const CommandAnswer& answer);
  /// Moves it to the Space beside the active one of the display under the mouse.
  void moveFrontWindowStep(bool right, bool follow, const CommandAnswer& answer);

  [[nodiscard]] Outcome saveLayout();
  void restoreLayout(const CommandAnswer& answer);
  void eject(const CommandAnswer& answer);

  [[nodiscard]] Outcome toggleScratchpad();
  /// Minimises the windows of the current Space, or brings back what was minimised last.
  [[nodiscard]] Outcome minimizeAll();
  [[nodiscard]] Outcome undoMinimize();
  /// Saves the current Space and closes its windows.
  [[nodiscard]] Outcome saveAndClose();

  void addDesktop(const CommandAnswer& answer);
  void removeDesktop(const Space& space, const CommandAnswer& answer);

 private:
  [[nodiscard]] const SpaceSnapshot& snapshot() const { return services_.watcher.latest(); }
  using FailureText = std::string_view (*)(SpaceManagement::Failure failure, const DesktopTexts& texts);
  /// For an operation that has been successful only when a snapshot shows what it was for.
  [[nodiscard]] SpaceManagement::Completion answerWhen(CommandAnswer::Condition condition, FailureText failureText,
                                                       const CommandAnswer& answer) const;
  void fail(std::string_view message, const CommandAnswer& answer) const;

  const ProgramServices& services_;
  SpaceSwitcher& switcher_;
  WindowServices& windows_;
};

}  // namespace tallowin
