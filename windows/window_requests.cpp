#include "windows/window_requests.h"

#include "base/json_text.h"
#include "base/unicode.h"
#include "commands/space_command.h"
#include "core/app_pins.h"
#include "windows/window_texts.h"

namespace tallowin {

namespace {

/// Does it with the letter that was given, or asks the user for one.
template <typename Ask, typename Do>
void byLetter(const RequestJob& job, const Ask& ask, const Do& doIt) {
  const auto& operands = job.words.operands;
  const auto letter = operands.empty() ? std::nullopt : WindowMarks::letter(operands.front());
  if (!operands.empty() && !letter) {
    job.fail("a mark is a letter from A to Z", exit_status::usage);
  } else if (const auto fault = letter ? doIt(*letter) : ask()) {
    job.fail(*fault);
  } else {
    job.succeed();
  }
}

}  // namespace

void WindowRequests::addTo(RequestTable& table) {
  const auto add = [&](RequestKind kind, void (WindowRequests::*member)(RequestJob) const) {
    table[kind] = [this, member](RequestJob job) { (this->*member)(std::move(job)); };
  };
  add(RequestKind::windows, &WindowRequests::windows);
  add(RequestKind::savedSpaces, &WindowRequests::savedSpaces);
  add(RequestKind::reopen, &WindowRequests::reopen);
  add(RequestKind::pin, &WindowRequests::pin);
  add(RequestKind::unpin, &WindowRequests::unpin);
  add(RequestKind::mark, &WindowRequests::mark);
  add(RequestKind::jump, &WindowRequests::jump);
}

void WindowRequests::windows(RequestJob job) const {
  auto& contents = services_.windows.contents;
  contents.readNow();
  const auto& snapshot = services_.watcher.latest();
  auto found = contents.windows().get();
  if (!job.words.has("--all")) {
    const auto active = snapshot.activeSpace();
    found = active ? contents.windows(active->managedID) : std::vector<WindowInfo>();
  }
  job.print(job.words.json() ? prettyJSON(windowRecords(found, snapshot, services_.store))
                             : windowTable(found, snapshot, services_.store));
}

void WindowRequests::savedSpaces(RequestJob job) const {
  const auto spaces = services_.windows.savedSpaces.list();
  if (job.words.namesOnly()) {
    job.printNames(namesOf(spaces));
    return;
  }
  if (!job.words.json()) {
    job.print(savedSpaceTable(spaces, services_.clock));
    return;
  }
  auto records = PropertyList::array();
  for (const auto& space : spaces) {
    records.push_back(toJson(space));
  }
  job.print(prettyJSON(records));
}

void WindowRequests::reopen(RequestJob job) const {
  const auto& name = job.words.operands.front();
  if (const auto space = services_.windows.savedSpaces.named(name)) {
    services_.windows.savedSpaceCommands.reopen(*space);
    job.succeed();
  } else {
    job.fail("no saved Space is called " + name);
  }
}

/// The application that a person means: its bundle identifier, or the name of one that runs.
std::optional<std::string> WindowRequests::bundleIDOf(const std::string& application) const {
  for (const auto& running : services_.workspace.runningApplications()) {
    if (running.bundleIdentifier && (*running.bundleIdentifier == application ||
                                     equalIgnoringCase(running.localizedName.value_or(""), application))) {
      return running.bundleIdentifier;
    }
  }
  return services_.workspace.URLForApplicationWithBundleIdentifier(application) ? std::optional(application)
                                                                                : std::nullopt;
}

void WindowRequests::pin(RequestJob job) const {
  const auto& application = job.words.operands.front();
  const auto ref = spaceRefFromText(job.words.operands.back());
  const auto bundleID = bundleIDOf(application);
  services_.watcher.refresh();  // a number counts the desktops as they are now
  const auto space = resolve(ref, services_.watcher.latest(), services_.store);
  if (!bundleID) {
    job.fail("no application called " + application + " is running or installed");
  } else if (!space) {
    job.fail(notFoundMessage(ref).value_or(noActiveSpace));
  } else {
    pinApplication(*bundleID, *space, services_.store);
    if (!services_.settings.get(setting::applyAppRules)) {
      job.caller->err("tallowin: windows stay where they open while the setting applyAppRules is off\n");
    }
    job.succeedOnceSaved(services_.storage);
  }
}

void WindowRequests::unpin(RequestJob job) const {
  const auto& application = job.words.operands.front();
  if (unpinApplication(bundleIDOf(application).value_or(application), services_.store)) {
    job.succeedOnceSaved(services_.storage);
  } else {
    job.fail(application + " is pinned to no Space");
  }
}

void WindowRequests::mark(RequestJob job) const {
  auto& marks = services_.windows.markCommands;
  byLetter(job, [&] { return marks.setMark(); }, [&](const std::string& letter) { return marks.setMark(letter); });
}

void WindowRequests::jump(RequestJob job) const {
  auto& marks = services_.windows.markCommands;
  const auto ask = [&] {
    marks.jumpToMark();
    return MarkCommands::Fault();
  };
  byLetter(job, ask, [&](const std::string& letter) { return marks.jumpToMark(letter); });
}

}  // namespace tallowin
