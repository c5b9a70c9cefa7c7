#include "windows/window_commands.h"

#include <algorithm>

#include "commands/space_command.h"
#include "commands/stepping.h"

namespace tallowin {

void WindowCommands::fail(std::string_view message, const CommandAnswer& answer) const {
  services_.toasts.show({std::string(message), std::nullopt, true});
  answer.refuse(message);
}

void WindowCommands::moveFrontWindow(const Space& target, bool follow, const CommandAnswer& answer) {
  auto& windows = services_.windows;
  const auto window = windows.mover.frontWindow();
  if (!window) {
    fail(description(WindowMover::Failure::noWindow, windows.texts), answer);
    windows.contents.refresh();
    return;
  }
  auto application = services_.workspace.frontmostApplication();
  if (!application) {
    application = services_.workspace.runningApplicationWithProcessIdentifier(window->pid);
  }
  const auto name = application && application->localizedName ? *application->localizedName : "Window";
  windows.mover.move(
      *window, target, snapshot(), follow, true, [this, name, target, follow, answer](WindowMover::Result result) {
        if (!result) {
          fail(description(result.error(), services_.windows.texts), answer);
        } else {
          services_.toasts.show({"Moved " + name + " to " + services_.store.displayName(target), std::nullopt});
          answer.doneWhen([follow, id = target.id](const SpaceSnapshot& now) { return !follow || now.isActive(id); });
        }
        services_.windows.contents.refresh();
      });
}

void WindowCommands::moveFrontWindowStep(bool right, bool follow, const CommandAnswer& answer) {
  const auto display = services_.switcher.displayUnderMouse(snapshot());
  const auto& settings = services_.settings;
  const SteppingRules rules{settings.get(setting::wrapAround), settings.get(setting::hideFullscreenSpaces), false};
  if (const auto target = display ? neighbour(*display, right, rules, {}) : std::nullopt) {
    moveFrontWindow(*target, follow, answer);
  } else {
    answer.refuse(noNeighbour);
  }
}

Outcome WindowCommands::saveLayout() {
  services_.windows.contents.readNow();
  return services_.windows.layoutCommands.saveLayout(snapshot());
}

void WindowCommands::restoreLayout(const CommandAnswer& answer) {
  services_.windows.contents.readNow();
  services_.windows.layoutCommands.restoreLayout(snapshot(), answer);
}

void WindowCommands::eject(const CommandAnswer& answer) {
  services_.windows.contents.readNow();
  services_.windows.layoutCommands.eject(snapshot(), answer);
}

Outcome WindowCommands::toggleScratchpad() {
  services_.windows.contents.readNow();
  return services_.windows.scratchpad.toggle(snapshot(), services_.toasts);
}

Outcome WindowCommands::minimizeAll() {
  const auto space = snapshot().activeSpace();
  if (!space) {
    return Outcome::refused(noActiveSpace);
  }
  auto& windows = services_.windows;
  windows.contents.readNow();
  services_.toasts.show(minimizedToast(windows.minimizer.minimizeAll(*space, windows.contents)));
  windows.contents.refresh();
  return Outcome::done();
}

Outcome WindowCommands::undoMinimize() {
  const bool canUndo = services_.windows.minimizer.canUndo();
  services_.windows.minimizer.undo();
  services_.windows.contents.refresh();
  return canUndo ? Outcome::done() : Outcome::refused("No windows are minimized that could be brought back");
}

Outcome WindowCommands::saveAndClose() {
  const auto space = snapshot().activeSpace();
  if (!space) {
    return Outcome::refused(noActiveSpace);
  }
  services_.windows.contents.readNow();
  const auto outcome = services_.windows.savedSpaceCommands.saveAndClose(*space);
  services_.windows.contents.refresh();
  return outcome;
}

void WindowCommands::addDesktop(const CommandAnswer& answer) {
  const auto isNew = [before = snapshot()](const Space& space) { return !before.space(space.id); };
  services_.windows.management.addDesktop(
      answerWhen([isNew](const SpaceSnapshot& now) { return std::ranges::any_of(now.allSpaces(), isNew); },
                 additionFailure, answer));
}

void WindowCommands::removeDesktop(const Space& space, const CommandAnswer& answer) {
  if (!space.desktopNumber) {
    fail(services_.windows.texts.desktopNotFound, answer);
    return;
  }
  services_.windows.management.removeDesktop(
      *space.desktopNumber,
      answerWhen([id = space.id](const SpaceSnapshot& now) { return !now.space(id); }, removalFailure, answer));
}

SpaceManagement::Completion WindowCommands::answerWhen(CommandAnswer::Condition condition, FailureText failureText,
                                                       const CommandAnswer& answer) const {
  return [this, condition = std::move(condition), failureText, answer](SpaceManagement::Result result) {
    if (result) {
      if (services_.windows.management.showsAtOnce()) {
        services_.watcher.refresh();
      }
      answer.doneWhen(condition);
    } else {
      fail(failureText(result.error(), services_.windows.texts), answer);
    }
  };
}

}  // namespace tallowin
