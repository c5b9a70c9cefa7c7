#include "app/command_performer.h"

#include <chrono>

#include "automation/diagnostics.h"
#include "commands/command_url.h"
#include "presentation/presentation.h"

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

/// The command that the words stand for: that of the URL in which they are the host, the path and the query.
SpaceCommand commandOf(const RequestWords& words) {
  URL url{"tallowin", std::string(words.command), "", words.operands, {}};
  if (words.command == "rename" || words.command == "note") {
    url.queryItems.push_back({words.command == "rename" ? "name" : "text", url.pathComponents.back()});
    url.pathComponents.pop_back();
  }
  if (words.has("--all")) {
    url.pathComponents.emplace_back("all");
  }
  return commandFromURL(url)->value();  // the table of words has hosts that there are
}

}  // namespace

struct CommandPerformer::Call {
  CommandPerformer& performer;
  const CommandAnswer answer;
  const CommandOptions options;
  const Services& services = performer.services_;
  const ProgramServices& program = services.program;
  const SpaceSnapshot& snapshot = program.watcher.latest();

  // Switching.

  void operator()(const command::SwitchTo& command) const {
    const auto target = find(command.space);
    if (!target) {
      return;
    }
    const auto active = snapshot.activeSpace();
    const bool goesBack = active && target->id == active->id && program.settings.get(setting::backAndForth);
    if (const auto space = goesBack ? services.history.previous(snapshot) : target) {
      performer.switchTo(*space, answer);
    } else {
      answer.done();
    }
  }
  void operator()(const command::Step& command) const {
    const auto display = services.switcher.displayUnderMouse(snapshot);
    const auto& settings = program.settings;
    const SteppingRules rules{settings.get(setting::wrapAround), settings.get(setting::hideFullscreenSpaces),
                              settings.get(setting::skipEmptyWhenCycling) || settings.get(setting::hideEmptySpaces)};
    switchTo(display ? neighbour(*display, command.right, rules, services.isSpaceEmpty) : std::nullopt, noNeighbour);
  }
  void operator()(const command::Step2D& command) const {
    const auto display = services.switcher.displayUnderMouse(snapshot);
    const auto columns = program.settings.get(setting::gridColumns);
    switchTo(display ? gridNeighbour(*display, command.up, columns) : std::nullopt, noNeighbour);
  }
  void operator()(const command::Back& /*command*/) const {
    switchTo(services.history.previous(snapshot), "There is no Space to go back to");
  }

  // What is said of a Space.

  void operator()(const command::Rename& command) const {
    if (const auto space = find(command.space); space && !command.name) {
      tell(services.naming.ask(*space, false));
    } else if (space) {
      services.naming.give(*command.name, space->id);
      answer.done();
    }
  }
  void operator()(const command::Note& command) const {
    if (!command.text) {
      (*this)(command::Notes{command.space});
    } else if (const auto space = find(command.space)) {
      program.store.setNote(*command.text, space->id);
      answer.done();
    }
  }
  void operator()(const command::Notes& command) const {
    if (const auto space = find(command.space)) {
      if (const auto opened = services.noteFiles.open(*space)) {
        answer.done();
      } else {
        answer.refuse("The note could not be saved: " + opened.error().description);
      }
    }
  }
  void operator()(const command::Profile& command) const { answer.tell(services.records.useProfile(command.name)); }
  void operator()(const command::Template& command) const { answer.tell(services.records.applyTemplate(command.name)); }

  // Windows and desktops.

  void operator()(const command::MoveWindow& command) const {
    if (const auto space = find(command.space)) {
      services.windows.moveFrontWindow(*space, follows(), answer);
    }
  }
  void operator()(const command::MoveWindowStep& command) const {
    services.windows.moveFrontWindowStep(command.right, follows(), answer);
  }
  void operator()(const command::SaveLayout& /*command*/) const { answer.tell(services.windows.saveLayout()); }
  void operator()(const command::RestoreLayout& /*command*/) const { services.windows.restoreLayout(answer); }
  void operator()(const command::Eject& /*command*/) const { services.windows.eject(answer); }
  void operator()(const command::ToggleScratchpad& /*command*/) const {
    answer.tell(services.windows.toggleScratchpad());
  }
  void operator()(const command::MinimizeAll& /*command*/) const { answer.tell(services.windows.minimizeAll()); }
  void operator()(const command::UndoMinimize& /*command*/) const { answer.tell(services.windows.undoMinimize()); }
  void operator()(const command::SaveAndClose& /*command*/) const { answer.tell(services.windows.saveAndClose()); }
  void operator()(const command::AddDesktop& /*command*/) const { services.windows.addDesktop(answer); }
  void operator()(const command::RemoveDesktop& command) const {
    if (const auto space = find(command.space); space && options.ask) {
      askToRemove(*space);
    } else if (space) {
      performer.remove(*space, answer);
    }
  }

  // What is shown.

  void operator()(const command::Setup& command) const {
    if (const auto space = find(command.space)) {
      tell(program.presentation.showSettings("spaces", space->id));
    }
  }
  void operator()(const command::OpenSettings& /*command*/) const {
    tell(program.presentation.showSettings(std::nullopt, std::nullopt));
  }
  void operator()(const command::Windows& command) const {
    tell(program.presentation.showWindowPanel(command.allSpaces));
  }
  void operator()(const command::Launcher& /*command*/) const { tell(program.presentation.showLauncher()); }
  void operator()(const command::Overview& /*command*/) const { tell(program.presentation.toggleOverview()); }
  void operator()(const command::DemoTour& /*command*/) const {
    if (program.settings.get(setting::demoMode)) {
      tell(program.presentation.runDemoTour());
    } else {
      fail("Turn on demo mode first");
    }
  }
  void operator()(const command::Diagnostics& /*command*/) const {
    if (program.pasteboard.setString(diagnosticsReport(program, snapshot, services.records.shortcutFailures()))) {
      program.toasts.show({"Diagnostics copied", std::nullopt});
      answer.done();
    } else {
      fail("There is no clipboard to copy the diagnostics to");
    }
  }

  /// Whoever answers finds the Space by its id, as others may have come and gone.
  void askToRemove(const Space& space) const {
    program.alerts.show({"Remove “" + program.store.displayName(space) + "”?",
                         "Its windows go to the desktop beside it. What you have said about it is kept under Restore "
                         "an Earlier State.",
                         {"Remove", "Cancel"}},
                        [&performer = performer, id = space.id](std::optional<std::size_t> button) {
                          if (button == std::size_t{0}) {
                            performer.removeIfThere(id);
                          }
                        });
    answer.done();
  }

  /// The Space that is meant; when there is none, that is said.
  [[nodiscard]] std::optional<Space> find(const SpaceRef& ref) const {
    auto space = resolve(ref, snapshot, program.store);
    if (!space) {
      if (const auto message = notFoundMessage(ref)) {
        fail(*message);
      } else {
        answer.refuse(noActiveSpace);
      }
    }
    return space;
  }

  void switchTo(const std::optional<Space>& space, std::string_view ifNone) const {
    if (space) {
      performer.switchTo(*space, answer);
    } else {
      answer.refuse(ifNone);
    }
  }

  [[nodiscard]] bool follows() const { return options.follow || program.settings.get(setting::followMovedWindow); }

  void tell(const Shown& shown) const { answer.tell(shown ? Outcome::done() : Outcome::refused(shown.error())); }

  void fail(const std::string& message) const {
    program.toasts.show({message, std::nullopt, true});
    answer.refuse(message);
  }
};

void CommandPerformer::removeIfThere(const std::string& spaceID) {
  services_.program.watcher.refresh();
  if (const auto space = services_.program.watcher.latest().space(spaceID)) {
    remove(*space, services_.underWay.begin(patienceWithDesktops, [](const Outcome& /*outcome*/) {}));
  }
}

void CommandPerformer::remove(const Space& space, const CommandAnswer& answer) {
  services_.records.backups.keep("before removing " + services_.program.store.displayName(space));
  services_.windows.removeDesktop(space, answer);
}

void CommandPerformer::perform(const SpaceCommand& command, CommandOptions options, OutcomeHandler told) {
  // A switch is a number of steps from the active Space, which may have changed less than a debounce ago.
  services_.program.watcher.refresh();
  std::visit(Call{*this, services_.underWay.begin(patienceWith(command), std::move(told)), options}, command);
}

void CommandPerformer::switchTo(const Space& space) {
  switchTo(space, services_.underWay.begin(patience, [](const Outcome& /*outcome*/) {}));
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
    answer.refuse("The desktop could not be asked to switch to " + services_.program.store.displayName(space));
  }
}

namespace {

struct CommandRequests {
  const ProgramServices& services;
  CommandPerformer& performer;
  CommandsUnderWay& underWay;
  const std::function<std::optional<URLFault>(const std::string& url)> openURL;

  void open(const RequestJob& job) const {
    if (const auto fault = openURL(job.words.operands.front())) {
      job.fail(fault->message, exitStatus(*fault));
    } else {
      job.succeed();
    }
  }

  void perform(const RequestJob& job) const {
    const auto command = commandOf(job.words);
    if (const auto* const switching = std::get_if<command::SwitchTo>(&command)) {
      switchTo(job, *switching);
      return;
    }
    const bool isSaved = std::holds_alternative<command::Rename>(command);
    performer.perform(command, {job.words.has("--follow"), job.words.has("--ask")},
                      [job, isSaved, &storage = services.storage](const Outcome& outcome) {
                        if (isSaved && outcome.kind == Outcome::Kind::done) {
                          job.succeedOnceSaved(storage);
                        } else {
                          job.end(outcome);
                        }
                      });
  }

  /// Where the Space is active already nothing is asked for, as the command might lead back to the Space before.
  void switchTo(const RequestJob& job, const command::SwitchTo& command) const {
    underWay.whenSettled([*this, job, command] {
      if (isActive(command.space)) {
        job.succeed();
      } else {
        performer.perform(command, {}, [job](const Outcome& outcome) { job.end(outcome); });
      }
    });
  }

  bool isActive(const SpaceRef& ref) const {
    services.watcher.refresh();
    const auto space = resolve(ref, services.watcher.latest(), services.store);
    return space && space->isActive;
  }
};

}  // namespace

void addCommandRequests(RequestTable& table, const ProgramServices& services, CommandPerformer& performer,
                        CommandsUnderWay& underWay,
                        const std::function<std::optional<URLFault>(const std::string& url)>& openURL) {
  const CommandRequests answers{services, performer, underWay, openURL};
  table[RequestKind::url] = std::bind_front(&CommandRequests::open, answers);
  table[RequestKind::command] = std::bind_front(&CommandRequests::perform, answers);
}

}  // namespace tallowin
