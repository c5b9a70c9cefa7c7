#include "windows/window_commands.h"

#include <algorithm>

#include "commands/space_switcher.h"

namespace tallowin {

void WindowCommands::fail(std::string_view message, const CommandAnswer& answer) const {
  services_.toasts.show({std::string(message), std::nullopt, true});
  answer.refuse(message);
}

void WindowCommands::moveFrontWindow(const Space& target, bool follow, const CommandAnswer& answer) {
  const auto window = windows_.mover.frontWindow();
  if (!window) {
    fail(description(WindowMover::Failure::noWindow, services_.texts()), answer);
    windows_.contents.refresh();
    return;
  }
  auto application = services_.workspace.frontmostApplication();
  if (!application) {
    application = services_.workspace.runningApplicationWithProcessIdentifier(window->pid);
  }
  const auto name = application && application->localizedName ? *application->localizedName : "Window";
  windows_.mover.move(
      *window, target, snapshot(), follow, true, [this, name, target, follow, answer](WindowMover::Result result) {
        if (!result) {
          fail(description(result.error(), services_.texts()), answer);
        } else {
          services_.toasts.show({"Moved " + name + " to " + services_.store.displayName(target), std::nullopt});
          answer.doneWhen([follow, id = target.id](const SpaceSnapshot& now) { return !follow || now.isActive(id); });
        }
        windows_.contents.refresh();
      });
}

void WindowCommands::moveFrontWindowStep(bool right, bool follow, const CommandAnswer& answer) {
  const auto display = switcher_.displayUnderMouse(snapshot());
  const auto& settings = services_.settings;
  const SteppingRules rules{settings.get(setting::wrapAround), settings.get(setting::hideFullscreenSpaces), false};
  if (const auto target = display ? neighbour(*display, right, rules, {}) : std::nullopt) {
    moveFrontWindow(*target, follow, answer);
  } else {
    answer.refuse(noNeighbour);
  }
}

Outcome WindowCommands::saveLayout() {
  windows_.contents.readNow();
  return windows_.layouts.saveLayout(snapshot());
}

void WindowCommands::restoreLayout(const CommandAnswer& answer) {
  windows_.contents.readNow();
  windows_.layouts.restoreLayout(snapshot(), answer);
}

void WindowCommands::eject(const CommandAnswer& answer) {
  windows_.contents.readNow();
  windows_.layouts.eject(snapshot(), answer);
}

Outcome WindowCommands::toggleScratchpad() {
  windows_.contents.readNow();
  return windows_.scratchpad.toggle(snapshot());
}

Outcome WindowCommands::minimizeAll() {
  const auto space = snapshot().activeSpace();
  if (!space) {
    return Outcome::refused(noActiveSpace);
  }
  windows_.contents.readNow();
  const auto count = windows_.minimizer.minimizeAll(*space, windows_.contents);
  services_.toasts.show({"Minimized " + std::to_string(count) + " windows. Undo from the Tallowin menu.",
                         "arrow.down.right.and.arrow.up.left"});
  windows_.contents.refresh();
  return Outcome::done();
}

Outcome WindowCommands::undoMinimize() {
  const bool canUndo = windows_.minimizer.canUndo();
  windows_.minimizer.undo();
  windows_.contents.refresh();
  return canUndo ? Outcome::done() : Outcome::refused("No windows are minimized that could be brought back");
}

Outcome WindowCommands::saveAndClose() {
  const auto space = snapshot().activeSpace();
  if (!space) {
    return Outcome::refused(noActiveSpace);
  }
  windows_.contents.readNow();
  const auto outcome = windows_.savedSpaces.saveAndClose(*space);
  windows_.contents.refresh();
  return outcome;
}

void WindowCommands::addDesktop(const CommandAnswer& answer) {
  const auto isNew = [before = snapshot()](const Space& space) { return !before.space(space.id); };
  windows_.management.addDesktop(
      answerWhen([isNew](const SpaceSnapshot& now) { return std::ranges::any_of(now.allSpaces(), isNew); },
                 additionFailure, answer));
}

void WindowCommands::removeDesktop(const Space& space, const CommandAnswer& answer) {
  if (!space.desktopNumber) {
    fail(services_.texts().desktopNotFound, answer);
    return;
  }
  windows_.management.removeDesktop(
      *space.desktopNumber,
      answerWhen([id = space.id](const SpaceSnapshot& now) { return !now.space(id); }, removalFailure, answer));
}

SpaceManagement::Completion WindowCommands::answerWhen(CommandAnswer::Condition condition, FailureText failureText,
                                                       const CommandAnswer& answer) const {
  return [this, condition = std::move(condition), failureText, answer](SpaceManagement::Result result) {
    if (result) {
      if (windows_.management.showsAtOnce()) {
        services_.watcher.refresh();
      }
      answer.doneWhen(condition);
    } else {
      fail(failureText(result.error(), services_.texts()), answer);
    }
  };
}

}  // namespace tallowin
