#include "automation/record_services.h"

#include "base/json_text.h"

namespace tallowin {

StateExporter::StateExporter(const ProgramServices& services, SpaceChanges& changes, SpaceContents& contents)
    : services_(services),
      contents_(contents),
      file_(services.storage, services.paths.supportDirectory() / "state.json", "StateExporter",
            {.delay = delay, .isOwed = false}) {
  const auto changed = [this](const auto&...) { schedule(); };
  observers_.add(changes.observe(changed));
  observers_.add(contents.appsBySpace().observeDidChange(changed));
}

void StateExporter::schedule() {
  file_.changed([this]() -> RecordFile::Text {
    const auto& snapshot = services_.watcher.latest();
    if (snapshot == SpaceSnapshot::empty()) {
      return nullptr;
    }
    auto state = stateRecord(snapshot, services_.store, appNames(contents_), services_.clock.now());
    return [state = std::move(state)] { return prettyJSON(state); };
  });
}

RecordServices::RecordServices(const ProgramServices& services, SpaceChanges& changes, SpaceContents& contents,
                               SpaceManagement& management)
    : tracker(services),
      profiles(services),
      templates(services),
      templateCommands(services, templates, management),
      transfer(services),
      backups(services, transfer),
      stateExporter(services, changes, contents) {}

Outcome RecordServices::useProfile(const std::string& name) {
  if (const auto profile = profiles.named(name)) {
    backups.keep("before profile " + profile->name);
  }
  return profiles.use(name);
}

Outcome RecordServices::applyTemplate(const std::string& name) {
  if (const auto layout = templates.named(name)) {
    backups.keep("before template " + layout->name);
  }
  return templateCommands.apply(name);
}

}  // namespace tallowin
