#include "app/command_performer.h"

#include <chrono>

namespace tallowin {

namespace {

using namespace std::chrono_literals;

/// What has not been seen to happen after this long is not waited for any more.
constexpr Duration patience = 2s;
constexpr Duration patienceWithDesktops = 4s;  ///< that are added or removed: Mission Control takes its time

Duration patienceWith(const SpaceCommand& command) {
  return std::holds_alternative<command::AddDesktop>(command) || std::holds_alternative<command::RemoveDesktop>(command)
             ? patienceWithDesktops
             : patience;
}

Outcome outcomeOf(const Shown& shown) {
  return shown ? Outcome::done() : Outcome::refused(shown.error());
}

}  // namespace

void CommandPerformer::perform(const SpaceCommand& command, CommandOptions options, OutcomeHandler told) {
  // A switch is a number of steps from the active Space, which may have changed less than a debounce ago.
  services_.watcher.refresh();
  const Call call{services_.underWay.begin(patienceWith(command), std::move(told)), options};
  std::visit([&](const auto& each) { perform(each, call); }, command);
}

void CommandPerformer::switchTo(const Space& space) {
  switchTo(space, services_.underWay.begin(patience, [](const Outcome& /*outcome*/) {}));
}

/// The Space that is meant; when there is none, that is said.
std::optional<Space> CommandPerformer::find(const SpaceRef& ref, const CommandAnswer& answer) {
  auto space = resolve(ref, snapshot(), services_.store);
  if (!space) {
    if (const auto message = notFoundMessage(ref)) {
      fail(*message, answer);
    } else {
      answer.refuse(noActiveSpace);
    }
  }
  return space;
}

void CommandPerformer::switchTo(const Space& space, const CommandAnswer& answer) {
  // What an earlier switch of this display was to show will not be seen any more.
  if (const auto earlier = switches_.find(space.displayID);
      earlier != switches_.end() && earlier->second.target != space.id) {
    earlier->second.answer.tell(Outcome::notSeen());
  }
  switches_.insert_or_assign(space.displayID, Switch{space.id, answer});
  if (services_.switchTo(space)) {
    answer.doneWhen([id = space.id](const SpaceSnapshot& now) { return now.isActive(id); });
  } else {
    answer.refuse("The desktop could not be asked to switch to " + services_.store.displayName(space));
  }
}

void CommandPerformer::switchTo(const std::optional<Space>& space, std::string_view ifNone,
                                const CommandAnswer& answer) {
  if (space) {
    switchTo(*space, answer);
  } else {
    answer.refuse(ifNone);
  }
}

void CommandPerformer::fail(const std::string& message, const CommandAnswer& answer) {
  services_.toasts.show({message, std::nullopt, true});
  answer.refuse(message);
}

void CommandPerformer::perform(const command::SwitchTo& command, const Call& call) {
  const auto target = find(command.space, call.answer);
  if (!target) {
    return;
  }
  const auto active = snapshot().activeSpace();
  const bool goesBack = active && target->id == active->id && services_.settings.get(setting::backAndForth);
  if (const auto previous = goesBack ? services_.history.previous(snapshot()) : target) {
    switchTo(*previous, call.answer);
  } else {
    call.answer.done();
  }
}

void CommandPerformer::perform(const command::Step& command, const Call& call) {
  const auto display = services_.switcher.displayUnderMouse(snapshot());
  const auto& settings = services_.settings;
  const SteppingRules rules{settings.get(setting::wrapAround), settings.get(setting::hideFullscreenSpaces),
                            settings.get(setting::skipEmptyWhenCycling) || settings.get(setting::hideEmptySpaces)};
  switchTo(display ? neighbour(*display, command.right, rules, services_.isSpaceEmpty) : std::nullopt, noNeighbour,
           call.answer);
}

void CommandPerformer::perform(const command::Step2D& command, const Call& call) {
  const auto display = services_.switcher.displayUnderMouse(snapshot());
  const auto columns = services_.settings.get(setting::gridColumns);
  switchTo(display ? gridNeighbour(*display, command.up, columns) : std::nullopt, noNeighbour, call.answer);
}

void CommandPerformer::perform(const command::Back& /*command*/, const Call& call) {
  switchTo(services_.history.previous(snapshot()), "There is no Space to go back to", call.answer);
}

void CommandPerformer::perform(const command::Rename& command, const Call& call) {
  const auto space = find(command.space, call.answer);
  if (!space) {
    return;
  }
  if (!command.name) {
    call.answer.tell(outcomeOf(services_.naming.ask(*space, false)));
    return;
  }
  services_.naming.give(*command.name, space->id);
  call.answer.done();
}

void CommandPerformer::perform(const command::Note& command, const Call& call) {
  if (!command.text) {
    perform(command::Notes{command.space}, call);
  } else if (const auto space = find(command.space, call.answer)) {
    services_.store.setNote(*command.text, space->id);
    call.answer.done();
  }
}

void CommandPerformer::perform(const command::Notes& command, const Call& call) {
  if (const auto space = find(command.space, call.answer)) {
    if (const auto opened = services_.noteFiles.open(*space, services_.store)) {
      call.answer.done();
    } else {
      call.answer.refuse("The note could not be saved: " + opened.error().description);
    }
  }
}

void CommandPerformer::perform(const command::Setup& command, const Call& call) {
  if (const auto space = find(command.space, call.answer)) {
    call.answer.tell(outcomeOf(services_.presentation.settingsWindow.show("spaces", space->id)));
  }
}

void CommandPerformer::perform(const command::Profile& command, const Call& call) {
  call.answer.tell(services_.records.useProfile(command.name));
}

void CommandPerformer::perform(const command::Template& command, const Call& call) {
  call.answer.tell(services_.records.applyTemplate(command.name));
}

void CommandPerformer::perform(const command::Windows& command, const Call& call) {
  call.answer.tell(outcomeOf(services_.presentation.panels.showWindows(command.allSpaces)));
}

void CommandPerformer::perform(const command::Launcher& /*command*/, const Call& call) {
  call.answer.tell(outcomeOf(services_.presentation.panels.showLauncher()));
}

void CommandPerformer::perform(const command::Overview& /*command*/, const Call& call) {
  call.answer.tell(outcomeOf(services_.presentation.overview.toggle()));
}

void CommandPerformer::perform(const command::OpenSettings& /*command*/, const Call& call) {
  call.answer.tell(outcomeOf(services_.presentation.settingsWindow.show(std::nullopt, std::nullopt)));
}

void CommandPerformer::perform(const command::Diagnostics& /*command*/, const Call& call) {
  if (services_.pasteboard.setString(services_.diagnostics())) {
    services_.toasts.show({"Diagnostics copied", std::nullopt});
    call.answer.done();
  } else {
    fail("There is no clipboard to copy the diagnostics to", call.answer);
  }
}

void CommandPerformer::perform(const command::DemoTour& /*command*/, const Call& call) {
  if (services_.isDemo()) {
    call.answer.tell(outcomeOf(services_.presentation.tour.runDemo()));
  } else {
    fail("Turn on demo mode first", call.answer);
  }
}

bool CommandPerformer::follows(const Call& call) const {
  return call.options.follow || services_.settings.get(setting::followMovedWindow);
}

void CommandPerformer::perform(const command::MoveWindow& command, const Call& call) {
  if (const auto space = find(command.space, call.answer)) {
    services_.windows.moveFrontWindow(*space, follows(call), call.answer);
  }
}

void CommandPerformer::perform(const command::MoveWindowStep& command, const Call& call) {
  services_.windows.moveFrontWindowStep(command.right, follows(call), call.answer);
}

void CommandPerformer::perform(const command::RemoveDesktop& command, const Call& call) {
  if (const auto space = find(command.space, call.answer)) {
    services_.records.backups.keep("before removing " + services_.store.displayName(*space));
    services_.windows.removeDesktop(*space, call.answer);
  }
}

void CommandPerformer::perform(const command::SaveLayout& /*command*/, const Call& call) {
  call.answer.tell(services_.windows.saveLayout());
}

void CommandPerformer::perform(const command::RestoreLayout& /*command*/, const Call& call) {
  services_.windows.restoreLayout(call.answer);
}

void CommandPerformer::perform(const command::Eject& /*command*/, const Call& call) {
  services_.windows.eject(call.answer);
}

void CommandPerformer::perform(const command::ToggleScratchpad& /*command*/, const Call& call) {
  call.answer.tell(services_.windows.toggleScratchpad());
}

void CommandPerformer::perform(const command::MinimizeAll& /*command*/, const Call& call) {
  call.answer.tell(services_.windows.minimizeAll());
}

void CommandPerformer::perform(const command::UndoMinimize& /*command*/, const Call& call) {
  call.answer.tell(services_.windows.undoMinimize());
}

void CommandPerformer::perform(const command::SaveAndClose& /*command*/, const Call& call) {
  call.answer.tell(services_.windows.saveAndClose());
}

void CommandPerformer::perform(const command::AddDesktop& /*command*/, const Call& call) {
  services_.windows.addDesktop(call.answer);
}

}  // namespace tallowin
