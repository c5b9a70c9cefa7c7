#include <algorithm>
#include <array>
#include <functional>

#include "automation/record_requests.h"
#include "base/json_text.h"
#include "commands/space_command.h"

namespace tallowin {

namespace {

std::optional<std::string> orNothing(const std::string& text) {
  return text.empty() ? std::nullopt : std::optional(text);
}

void rename(SpaceStore& store, const std::string& name, const std::string& id) {
  store.setName(name, id);
  if (!name.empty()) {
    store.remember(name);
  }
}

struct Edit {
  std::string_view option;
  void (*apply)(SpaceStore& store, const std::string& value, const std::string& id);
};

constexpr Edit edits[] = {
    {"--name", rename},
    {"--symbol",
     [](SpaceStore& store, const std::string& value, const std::string& id) { store.setSymbol(orNothing(value), id); }},
    {"--color",
     [](SpaceStore& store, const std::string& value, const std::string& id) { store.setColor(orNothing(value), id); }},
    {"--note", [](SpaceStore& store, const std::string& value, const std::string& id) { store.setNote(value, id); }},
    {"--group", [](SpaceStore& store, const std::string& value, const std::string& id) { store.setGroup(value, id); }},
};

bool isColor(std::string_view text) {
  constexpr std::size_t length = 7;
  return text.size() == length && text.front() == '#' &&
         text.substr(1).find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
}

/// A member of the JSON that automations do not have, such as a misspelt one.
std::optional<std::string> strangeMember(const PropertyList& json) {
  SpaceAutomation full;
  for (auto* text : {&full.shortcutOnEnter, &full.shortcutOnLeave, &full.scriptOnEnter, &full.scriptOnLeave,
                     &full.keystrokeOnEnter, &full.browserApp, &full.browserProfile}) {
    *text = "";
  }
  const auto known = toJson(full);
  for (const auto& [key, value] : json.items()) {
    if (!known.contains(key)) {
      return key;
    }
  }
  return std::nullopt;
}

/// Answers requests that change what is said of one Space.
struct EditRequests {
  const ProgramServices& services;
  AutomationRunner& runner;
  AppNames apps;

  std::optional<Space> space(const RequestJob& job) const {
    const auto ref = spaceRefFromText(job.words.operands.front());
    services.watcher.refresh();  // a number counts the desktops as they are now
    auto found = resolve(ref, services.watcher.latest(), services.store);
    if (!found) {
      job.fail(notFoundMessage(ref).value_or(noActiveSpace));
    }
    return found;
  }

  /// Ends the job if something is wrong with the values; nothing is changed before that is known.
  bool refuse(const RequestJob& job) const {
    const auto& options = job.words.options;
    if (options.empty() || (options.size() == 1 && job.words.json())) {
      job.fail("say what to change: --name, --symbol, --color, --note, --group or --icon", exit_status::usage);
      return true;
    }
    if (const auto color = options.find("--color");
        color != options.end() && !color->second.empty() && !isColor(color->second)) {
      job.fail("a colour is written as #9B6BF4", exit_status::usage);
      return true;
    }
    if (const auto icon = options.find("--icon"); icon != options.end() && !icon->second.empty()) {
      if (const auto fault = lookAtIcon(job.path(icon->second)); !fault) {
        job.fail(fault.error());
        return true;
      }
    }
    return false;
  }

  std::expected<void, ForeignFault> lookAtIcon(const std::filesystem::path& image) const {
    const std::string notUnderstood = "That file is no picture.";
    const auto bytes = readForeignFile(services.files, image, notUnderstood);
    if (!bytes) {
      return std::unexpected(bytes.error());
    }
    return services.images.decode(*bytes) ? std::expected<void, ForeignFault>()
                                          : std::unexpected(ForeignFault{notUnderstood, "it cannot be decoded", false});
  }

  void edit(const RequestJob& job) const {
    const auto edited = refuse(job) ? std::nullopt : space(job);
    if (!edited) {
      return;
    }
    const auto& options = job.words.options;
    for (const auto& [option, apply] : edits) {
      if (const auto value = options.find(std::string(option)); value != options.end()) {
        apply(services.store, value->second, edited->id);
      }
    }
    if (const auto icon = options.find("--icon"); icon != options.end()) {
      const auto image = icon->second.empty() ? std::nullopt : std::optional(job.path(icon->second));
      if (const auto set = services.store.setCustomIcon(image, edited->id); !set) {
        job.fail("cannot save: " + set.error().description, exit_status::cannotCreate);
        return;
      }
    }
    if (!job.words.json()) {
      job.succeedOnceSaved(services.storage);
    } else if (job.save(services.storage)) {
      job.print(prettyJSON(spaceRecord(*edited, services.store, apps)));
    }
  }

  void answerAutomation(const RequestJob& job) const {
    const auto& operands = job.words.operands;
    const auto what = operands.size() > 1 ? operands[1] : "get";
    const bool hasFile = operands.size() > 2;
    if (hasFile != (what == "set") || (what != "get" && what != "set" && what != "clear" && what != "run")) {
      job.fail("what can be asked for: get, set FILE, clear, run", exit_status::usage);
      return;
    }
    const auto edited = space(job);
    if (!edited) {
      return;
    }
    const auto automation = services.store.meta(edited->id).automation.value_or(SpaceAutomation());
    if (what == "set") {
      setAutomation(job, *edited);
    } else if (what == "get") {
      job.print(prettyJSON(toJson(automation)));
    } else if (what == "clear") {
      services.store.setAutomation({}, edited->id);
      job.succeedOnceSaved(services.storage);
    } else {
      runner.launch(automation);
      job.succeed();
    }
  }

  void setAutomation(const RequestJob& job, const Space& space) const {
    const auto path = job.path(job.words.operands.back());
    const auto json = readForeignJSON(services.files, path, "that file is not an automation");
    if (!json) {
      job.fail(json.error());
      return;
    }
    const auto strange = json->is_object() ? strangeMember(*json) : std::nullopt;
    const auto automation = automationFromJson(*json);
    if (strange) {
      job.fail("an automation has no member \"" + *strange + "\"", exit_status::badData);
    } else if (!automation) {
      job.fail("that file is not an automation (a member has the wrong type)", exit_status::badData);
    } else {
      services.store.setAutomation(*automation, space.id);
      job.succeedOnceSaved(services.storage);
    }
  }
};

}  // namespace

void addEditRequests(RequestTable& table, const ProgramServices& services, AutomationRunner& automation,
                     const AppNames& apps) {
  const EditRequests answers{services, automation, apps};
  table[RequestKind::edit] = std::bind_front(&EditRequests::edit, answers);
  table[RequestKind::automation] = std::bind_front(&EditRequests::answerAutomation, answers);
}

}  // namespace tallowin
