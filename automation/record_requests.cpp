#include "automation/record_requests.h"

#include <functional>
#include <span>

#include "automation/time_record.h"
#include "base/json_text.h"
#include "base/property_list_reading.h"
#include "base/words.h"

namespace tallowin {

namespace {

constexpr std::int64_t defaultDays = 7;
constexpr std::int64_t mostDays = 36'600;  // a hundred years
constexpr std::size_t terminalWidth = 80;

/// Answers requests about profiles, templates, times and what moves between machines.
struct RecordRequests {
  const ProgramServices& services;
  RecordServices& records;
  PerformCommand perform;

  /// What can be done to one kind of thing, by the word that asks for it.
  struct Action {
    std::string_view word;
    void (RecordRequests::*withoutName)(const RequestJob&) const;
    void (RecordRequests::*withName)(const RequestJob&, const std::string&) const;
  };

  /// Does what the first operand asks for, to what the second names if it takes one.
  void dispatch(const RequestJob& job, std::span<const Action> actions) const {
    const auto& operands = job.words.operands;
    std::string known;
    for (const auto& [word, withoutName, withName] : actions) {
      known.append(known.empty() ? "" : ", ").append(word).append(withName != nullptr ? " NAME" : "");
      if (word == operands.front() && withoutName != nullptr && operands.size() == 1) {
        (this->*withoutName)(job);
        return;
      }
      if (word == operands.front() && withName != nullptr && operands.size() == 2 && !operands.back().empty()) {
        (this->*withName)(job, operands.back());
        return;
      }
    }
    job.fail("what can be asked for: " + known, exit_status::usage);
  }

  void profile(const RequestJob& job) const {
    static constexpr Action actions[] = {
        {"list", &RecordRequests::listProfiles, nullptr},
        {"save", nullptr, &RecordRequests::saveProfile},
        {"use", nullptr, &RecordRequests::useProfile},
        {"use-automatically", &RecordRequests::useNoProfileAutomatically, &RecordRequests::useProfileAutomatically},
        {"delete", nullptr, &RecordRequests::deleteProfile},
    };
    // It stands in the place of a name.
    if (job.words.has("--never") != (job.words.operands == std::vector<std::string>{"use-automatically"})) {
      job.fail("use-automatically takes a profile or --never, which nothing else takes", exit_status::usage);
      return;
    }
    dispatch(job, actions);
  }

  void listProfiles(const RequestJob& job) const {
    auto& profiles = records.profiles;
    const auto active = services.settings.get(setting::activeProfile);
    if (job.words.namesOnly()) {
      job.printNames(profiles.names());
      return;
    }
    job.print(job.words.json() ? prettyJSON(profileRecords(profiles.list(), active))
                               : profileList(profiles.names(), active));
  }

  void saveProfile(const RequestJob& job, const std::string& name) const {
    records.profiles.saveCurrent(name);
    job.succeedOnceSaved(services.storage);
  }

  void deleteProfile(const RequestJob& job, const std::string& name) const {
    if (records.profiles.remove(name)) {
      job.succeedOnceSaved(services.storage);
    } else {
      job.fail("no profile of exactly this name was deleted: " + name);
    }
  }

  void useProfile(const RequestJob& job, const std::string& name) const {
    perform(command::Profile{name}, [job](const Outcome& outcome) { job.end(outcome); });
  }

  void useProfileAutomatically(const RequestJob& job, const std::string& name) const {
    const auto profile = records.profiles.named(name);
    if (!profile) {
      job.fail("No profile is called " + name);
    } else {
      chooseProfile(job, profile->name);
    }
  }

  void useNoProfileAutomatically(const RequestJob& job) const { chooseProfile(job, std::nullopt); }

  void chooseProfile(const RequestJob& job, const std::optional<std::string>& name) const {
    if (records.profiles.chooseForDisplays(name)) {
      job.succeed();
    } else {
      job.fail("the settings could not be written", exit_status::cannotCreate);
    }
  }

  void layTemplate(const RequestJob& job) const {
    static constexpr Action actions[] = {
        {"list", &RecordRequests::listTemplates, nullptr},
        {"apply", nullptr, &RecordRequests::applyTemplate},
        {"import", nullptr, &RecordRequests::importTemplate},
    };
    dispatch(job, actions);
  }

  void listTemplates(const RequestJob& job) const {
    const auto templates = records.templates.list();
    job.printList<SpaceTemplate>(
        templates, [](const SpaceTemplate& each) { return toJson(each); }, [&] { return templateList(templates); });
  }

  void applyTemplate(const RequestJob& job, const std::string& name) const {
    perform(command::Template{name}, [job](const Outcome& outcome) { job.end(outcome); });
  }

  void importTemplate(const RequestJob& job, const std::string& file) const {
    if (const auto imported = records.templates.importFile(job.path(file))) {
      job.succeedOnceSaved(services.storage);
    } else {
      job.fail(imported.error());
    }
  }

  void exportFile(const RequestJob& job) const {
    const auto path = job.path(job.words.operands.front());
    if (const auto exported = records.transfer.exportFile(path); !exported) {
      job.fail("Export failed: " + exported.error().description, exit_status::cannotCreate);
    } else if (job.save(services.storage)) {
      job.print(printable("Exported to " + path.filename().string()) + "\n");
    }
  }

  void importFile(const RequestJob& job) const {
    const auto path = job.path(job.words.operands.front());
    const auto keepCopy = [&] { records.backups.keep("before import of " + path.filename().string()); };
    if (const auto imported = records.transfer.importFile(path, keepCopy); !imported) {
      job.fail(imported.error());
    } else if (job.save(services.storage)) {
      job.print(printable("Imported " + path.filename().string()) + "\n");
    }
  }

  void restore(const RequestJob& job) const {
    auto& backups = records.backups;
    if (job.words.operands.empty()) {
      job.print(job.words.json() ? prettyJSON(backupRecords(backups.list())) : backups.listText());
      return;
    }
    const auto& operand = job.words.operands.front();
    const auto number = decimalInteger(operand);
    const auto restored = number && *number > 0 ? backups.restore(static_cast<std::size_t>(*number)) : std::nullopt;
    if (!restored) {
      job.fail("there is no copy " + operand + "; \"tallowin restore\" lists them");
    } else if (*restored == Backups::Restored::all) {
      job.succeedOnceSaved(services.storage);
    } else if (job.save(services.storage)) {
      job.fail("everything is back, but desktops that were removed were not seen to come back");
    }
  }

  void time(const RequestJob& job) const {
    auto& tracker = records.tracker;
    const auto& options = job.words.options;
    const auto names = namesOfTimes(services.watcher.latest(), services.store);
    if (const auto file = options.find("--csv"); file != options.end()) {
      if (const auto written =
              services.files.writeAtomically(job.path(file->second), tracker.csv(names) + "\n", onlyTheUser)) {
        job.succeed();
      } else {
        job.fail("cannot write " + file->second + ": " + written.error().description, exit_status::cannotCreate);
      }
      return;
    }
    const auto given = options.find("--days");
    const auto days = given == options.end() ? std::optional(defaultDays) : decimalInteger(given->second);
    if (!days || *days < 1 || *days > mostDays) {
      job.fail("--days takes a number from 1", exit_status::usage);
      return;
    }
    const auto rows = timeRows(tracker.totals(*days), names);
    job.print(job.words.json() ? prettyJSON(toJson(rows)) : timeTable(rows, terminalWidth));
  }

  void diagnostics(const RequestJob& job) const {
    job.print(diagnosticsReport(services, services.watcher.latest(), records.shortcutFailures()) + "\n");
  }
};

}  // namespace

void addRecordRequests(RequestTable& table, const ProgramServices& services, RecordServices& records,
                       const PerformCommand& perform) {
  const RecordRequests answers{services, records, perform};
  table[RequestKind::profile] = std::bind_front(&RecordRequests::profile, answers);
  table[RequestKind::layTemplate] = std::bind_front(&RecordRequests::layTemplate, answers);
  table[RequestKind::exportFile] = std::bind_front(&RecordRequests::exportFile, answers);
  table[RequestKind::importFile] = std::bind_front(&RecordRequests::importFile, answers);
  table[RequestKind::restore] = std::bind_front(&RecordRequests::restore, answers);
  table[RequestKind::time] = std::bind_front(&RecordRequests::time, answers);
  table[RequestKind::diagnostics] = std::bind_front(&RecordRequests::diagnostics, answers);
}

}  // namespace tallowin
