#include "app/command_performer.h"

namespace tallowin {

void CommandPerformer::perform(const SpaceCommand& command) {
  std::visit(*this, command);
}

/// The Space that is meant; when there is none, that is said.
std::optional<Space> CommandPerformer::find(const SpaceRef& ref) {
  auto space = resolve(ref, snapshot(), services_.store);
  if (!space) {
    if (const auto message = notFoundMessage(ref)) {
      fail(*message);
    }
  }
  return space;
}

void CommandPerformer::switchTo(const std::optional<Space>& space) {
  if (space) {
    services_.switchTo(*space);
  }
}

void CommandPerformer::fail(const std::string& message) {
  services_.toasts.show({message, std::nullopt, true});
}

void CommandPerformer::operator()(const command::SwitchTo& command) {
  auto target = find(command.space);
  const auto active = snapshot().activeSpace();
  if (target && active && target->id == active->id && services_.settings.boolean("backAndForth")) {
    target = services_.history.previous(snapshot());
  }
  switchTo(target);
}

void CommandPerformer::operator()(const command::Step& command) {
  const auto display = services_.switcher.displayUnderMouse(snapshot());
  if (!display) {
    return;
  }
  const auto& settings = services_.settings;
  const SteppingRules rules{settings.boolean("wrapAround"), settings.boolean("hideFullscreenSpaces"),
                            settings.boolean("skipEmptyWhenCycling") || settings.boolean("hideEmptySpaces")};
  switchTo(neighbour(*display, command.right, rules, services_.isSpaceEmpty));
}

void CommandPerformer::operator()(const command::Step2D& command) {
  const auto display = services_.switcher.displayUnderMouse(snapshot());
  if (display) {
    switchTo(gridNeighbour(*display, command.up, services_.settings.integer("gridColumns")));
  }
}

void CommandPerformer::operator()(const command::Back& /*command*/) {
  switchTo(services_.history.previous(snapshot()));
}

void CommandPerformer::operator()(const command::Rename& command) {
  const auto space = find(command.space);
  if (space && command.name) {
    services_.naming.give(*command.name, space->id);
  } else if (space) {
    services_.naming.ask(*space, false);
  }
}

void CommandPerformer::operator()(const command::Note& command) {
  if (!command.text) {
    (*this)(command::Notes{command.space});
    return;
  }
  if (const auto space = find(command.space)) {
    services_.store.setNote(*command.text, space->id);
  }
}

void CommandPerformer::operator()(const command::Notes& command) {
  if (const auto space = find(command.space)) {
    services_.noteFiles.open(*space, services_.store);
  }
}

void CommandPerformer::operator()(const command::Setup& command) {
  if (const auto space = find(command.space)) {
    services_.presentation.settingsWindow.show("spaces", space->id);
  }
}

void CommandPerformer::operator()(const command::Diagnostics& /*command*/) {
  if (services_.pasteboard.setString(services_.records.transfer.diagnostics(snapshot(), {}))) {
    services_.toasts.show({"Diagnostics copied", std::nullopt});
  } else {
    fail("There is no clipboard to copy the diagnostics to");
  }
}

void CommandPerformer::operator()(const command::DemoTour& /*command*/) {
  if (services_.isDemo()) {
    services_.presentation.tour.runDemo();
  } else {
    fail("Turn on demo mode first");
  }
}

void CommandPerformer::operator()(const command::MoveWindow& command) {
  if (const auto space = find(command.space)) {
    services_.windows.moveFrontWindow(*space);
  }
}

void CommandPerformer::operator()(const command::RemoveDesktop& command) {
  if (const auto space = find(command.space)) {
    services_.windows.removeDesktop(*space);
  }
}

}  // namespace tallowin
