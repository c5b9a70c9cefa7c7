#include <functional>

#include "base/date_text.h"
#include "base/json_text.h"
#include "base/property_list_reading.h"
#include "base/unicode.h"
#include "base/words.h"
#include "commands/cli/request_job.h"
#include "commands/space_command.h"
#include "core/space_state.h"
#include "core/space_store.h"
#include "windows/window_layout.h"
#include "windows/window_services.h"

namespace tallowin {

namespace {

std::string counted(std::size_t count, const char* noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

/// Windows for reading, one line each, Space by Space: desktop number, Space, application, title; columns are aligned.
/// Windows on Spaces that the snapshot does not have are left out.
std::string windowTable(const std::vector<WindowInfo>& windows, const SpaceSnapshot& snapshot,
                        const SpaceStore& store) {
  using enum TextTable::Alignment;
  TextTable table({{right}, {left}, {left}, {left}});
  for (const auto& space : snapshot.allSpaces()) {
    for (const auto& window : windows) {
      if (window.spaceID == space.managedID) {
        table.add({desktopNumberText(space), store.displayName(space), window.appName, window.title});
      }
    }
  }
  return table.text();
}

/// Windows for programs; "number" is that of the desktop.
PropertyList windowRecords(const std::vector<WindowInfo>& windows, const SpaceSnapshot& snapshot,
                           const SpaceStore& store) {
  auto records = PropertyList::array();
  for (const auto& window : windows) {
    PropertyList record = {{"id", window.id},       {"pid", window.pid},     {"bundleID", nullptr},
                           {"app", window.appName}, {"title", window.title}, {"frame", toJson(window.frame)},
                           {"space", nullptr},      {"number", nullptr},     {"spaceName", nullptr}};
    if (window.bundleID) {
      record["bundleID"] = *window.bundleID;
    }
    if (const auto space = snapshot.managed(window.spaceID)) {
      record["space"] = space->id;
      record["spaceName"] = store.displayName(*space);
      if (space->desktopNumber) {
        record["number"] = *space->desktopNumber;
      }
    }
    records.push_back(std::move(record));
  }
  return records;
}

/// Saved Spaces for reading, one line each: when by local time, name, how many applications and tabs.
std::string savedSpaceTable(const std::vector<SavedSpace>& spaces, const Clock& clock) {
  using enum TextTable::Alignment;
  TextTable table({{left}, {left}, {right}, {right}});
  for (const auto& space : spaces) {
    table.add({localDateText(space.savedAt, clock), space.name, counted(space.apps.size(), "app"),
               counted(space.urls.size(), "tab")});
  }
  return table.text();
}

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

/// Answers requests about windows.
struct WindowRequests {
  const ProgramServices& services;
  WindowServices& windows;

  void listWindows(const RequestJob& job) const {
    auto& contents = windows.contents;
    contents.readNow();
    const auto& snapshot = services.watcher.latest();
    auto found = contents.windows().get();
    if (!job.words.has("--all")) {
      const auto active = snapshot.activeSpace();
      found = active ? contents.windows(active->managedID) : std::vector<WindowInfo>();
    }
    job.print(job.words.json() ? prettyJSON(windowRecords(found, snapshot, services.store))
                               : windowTable(found, snapshot, services.store));
  }

  void listSavedSpaces(const RequestJob& job) const {
    const auto spaces = windows.savedSpaces.list();
    job.printList<SavedSpace>(
        spaces, [](const SavedSpace& space) { return toJson(space); },
        [&] { return savedSpaceTable(spaces, services.clock); });
  }

  void reopen(const RequestJob& job) const {
    const auto& name = job.words.operands.front();
    if (const auto space = windows.savedSpaces.named(name)) {
      windows.savedSpaces.reopen(*space);
      job.succeed();
    } else {
      job.fail("no saved Space is called " + name);
    }
  }

  /// The application that a person means: its bundle identifier, or the name of one that runs.
  std::optional<std::string> bundleIDOf(const std::string& application) const {
    for (const auto& running : services.workspace.runningApplications()) {
      if (running.bundleIdentifier && (*running.bundleIdentifier == application ||
                                       equalIgnoringCase(running.localizedName.value_or(""), application))) {
        return running.bundleIdentifier;
      }
    }
    return services.workspace.URLForApplicationWithBundleIdentifier(application) ? std::optional(application)
                                                                                 : std::nullopt;
  }

  void pin(const RequestJob& job) const {
    const auto& application = job.words.operands.front();
    const auto ref = spaceRefFromText(job.words.operands.back());
    const auto bundleID = bundleIDOf(application);
    services.watcher.refresh();  // a number counts the desktops as they are now
    const auto space = resolve(ref, services.watcher.latest(), services.store);
    if (!bundleID) {
      job.fail("no application called " + application + " is running or installed");
    } else if (!space) {
      job.fail(notFoundMessage(ref).value_or(noActiveSpace));
    } else {
      pinApplication(*bundleID, *space, services.store);
      if (!services.settings.get(setting::applyAppRules)) {
        job.caller->err("tallowin: windows stay where they open while the setting applyAppRules is off\n");
      }
      job.succeedOnceSaved(services.storage);
    }
  }

  void unpin(const RequestJob& job) const {
    const auto& application = job.words.operands.front();
    if (unpinApplication(bundleIDOf(application).value_or(application), services.store)) {
      job.succeedOnceSaved(services.storage);
    } else {
      job.fail(application + " is pinned to no Space");
    }
  }

  void mark(const RequestJob& job) const {
    auto& marks = windows.marks;
    byLetter(job, [&] { return marks.setMark(); }, [&](const std::string& letter) { return marks.setMark(letter); });
  }

  void jump(const RequestJob& job) const {
    auto& marks = windows.marks;
    const auto ask = [&] {
      marks.jumpToMark();
      return WindowMarks::Fault();
    };
    byLetter(job, ask, [&](const std::string& letter) { return marks.jumpToMark(letter); });
  }
};

}  // namespace

void addWindowRequests(RequestTable& table, const ProgramServices& services, WindowServices& windows) {
  const WindowRequests answers{services, windows};
  table[RequestKind::windows] = std::bind_front(&WindowRequests::listWindows, answers);
  table[RequestKind::savedSpaces] = std::bind_front(&WindowRequests::listSavedSpaces, answers);
  table[RequestKind::reopen] = std::bind_front(&WindowRequests::reopen, answers);
  table[RequestKind::pin] = std::bind_front(&WindowRequests::pin, answers);
  table[RequestKind::unpin] = std::bind_front(&WindowRequests::unpin, answers);
  table[RequestKind::mark] = std::bind_front(&WindowRequests::mark, answers);
  table[RequestKind::jump] = std::bind_front(&WindowRequests::jump, answers);
}

}  // namespace tallowin
