#include "app/window_commands.h"

#include "app/stepping.h"

namespace tallowin {

void WindowCommands::fail(std::string_view message) const {
  services_.toasts.show({std::string(message), std::nullopt, true});
}

void WindowCommands::moveFrontWindow(const Space& target) {
  auto& windows = services_.windows;
  const auto window = windows.mover.frontWindow();
  if (!window) {
    fail(description(WindowMover::Failure::noWindow));
    windows.contents.refresh();
    return;
  }
  const auto application = services_.workspace.frontmostApplication();
  const auto name = application && application->localizedName ? *application->localizedName : "Window";
  windows.mover.move(
      *window, target, snapshot(), services_.settings.boolean("followMovedWindow"), true,
      [this, name, target](WindowMover::Result result) {
        if (result) {
          services_.toasts.show({"Moved " + name + " to " + services_.store.displayName(target), std::nullopt});
        } else {
          fail(description(result.error()));
        }
        services_.windows.contents.refresh();
      });
}

void WindowCommands::moveFrontWindowStep(bool right) {
  const auto display = services_.switcher.displayUnderMouse(snapshot());
  if (!display) {
    return;
  }
  const auto& settings = services_.settings;
  const SteppingRules rules{settings.boolean("wrapAround"), settings.boolean("hideFullscreenSpaces"), false};
  if (const auto target = neighbour(*display, right, rules, {})) {
    moveFrontWindow(*target);
  }
}

void WindowCommands::saveLayout() {
  services_.windows.contents.readNow();
  services_.windows.layoutCommands.saveLayout(snapshot());
}

void WindowCommands::restoreLayout() {
  services_.windows.contents.readNow();
  services_.windows.layoutCommands.restoreLayout(snapshot());
}

void WindowCommands::eject() {
  services_.windows.contents.readNow();
  services_.windows.layoutCommands.eject(snapshot());
}

void WindowCommands::toggleScratchpad() {
  services_.windows.contents.readNow();
  services_.windows.scratchpad.toggle(snapshot(), services_.toasts);
}

void WindowCommands::minimizeAll() {
  if (const auto space = snapshot().activeSpace()) {
    auto& windows = services_.windows;
    windows.contents.readNow();
    services_.toasts.show(minimizedToast(windows.minimizer.minimizeAll(*space, windows.contents)));
    windows.contents.refresh();
  }
}

void WindowCommands::undoMinimize() {
  services_.windows.minimizer.undo();
  services_.windows.contents.refresh();
}

void WindowCommands::saveAndClose() {
  if (const auto space = snapshot().activeSpace()) {
    services_.windows.contents.readNow();
    services_.windows.savedSpaceCommands.saveAndClose(*space);
    services_.windows.contents.refresh();
  }
}

void WindowCommands::addDesktop() {
  services_.windows.management.addDesktop(tellFailure());
}

void WindowCommands::removeDesktop(const Space& space) {
  if (space.desktopNumber) {
    services_.windows.management.removeDesktop(*space.desktopNumber, tellFailure());
  } else {
    fail(description(SpaceManagement::Failure::notFound));
  }
}

SpaceManagement::Completion WindowCommands::tellFailure() const {
  return [this](SpaceManagement::Result result) {
    if (!result) {
      fail(description(result.error()));
    }
  };
}

}  // namespace tallowin
