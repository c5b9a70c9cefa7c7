#include "app/command_requests.h"

#include "commands/command_url.h"

namespace tallowin {

namespace {

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

void CommandRequests::addTo(RequestTable& table) {
  table[RequestKind::url] = [this](const RequestJob& job) { openURL(job); };
  table[RequestKind::command] = [this](const RequestJob& job) { perform(job); };
}

void CommandRequests::openURL(const RequestJob& job) const {
  if (const auto fault = services_.openURL(job.words.operands.front())) {
    job.fail(fault->message, exitStatus(*fault));
  } else {
    job.succeed();
  }
}

void CommandRequests::perform(const RequestJob& job) const {
  const auto command = commandOf(job.words);
  if (const auto* const switching = std::get_if<command::SwitchTo>(&command)) {
    switchTo(job, *switching);
    return;
  }
  const bool isSaved = std::holds_alternative<command::Rename>(command);
  services_.performer.perform(command, {job.words.has("--follow")},
                              [job, isSaved, &storage = services_.storage](const Outcome& outcome) {
                                if (isSaved && outcome.kind == Outcome::Kind::done) {
                                  job.succeedOnceSaved(storage);
                                } else {
                                  job.end(outcome);
                                }
                              });
}

/// Where the Space is active already nothing is asked for, as the command might lead back to the Space before.
void CommandRequests::switchTo(const RequestJob& job, const command::SwitchTo& command) const {
  services_.underWay.whenSettled([this, job, command] {
    if (isActive(command.space)) {
      job.succeed();
    } else {
      services_.performer.perform(command, {}, [job](const Outcome& outcome) { job.end(outcome); });
    }
  });
}

bool CommandRequests::isActive(const SpaceRef& ref) const {
  services_.watcher.refresh();
  const auto space = resolve(ref, services_.watcher.latest(), services_.store);
  return space && space->isActive;
}

}  // namespace tallowin
