#include "automation/state_exporter.h"

#include <algorithm>

#include "base/json_text.h"

namespace tallowin {

StateExporter::StateExporter(Services services)
    : services_(services),
      file_(services.storage, services.paths.supportDirectory() / "state.json", "StateExporter",
            {.delay = delay, .isOwed = false, .queue = "tallowin.state"}) {
  const auto changed = [this](const auto&...) { schedule(); };
  observers_.add(services_.changes.observe(changed));
  observers_.add(services_.contents.appsBySpace().observeDidChange(changed));
}

void StateExporter::schedule() {
  file_.changed([this]() -> RecordFile::Text {
    const auto& snapshot = services_.watcher.latest();
    if (snapshot == SpaceSnapshot::empty()) {
      return nullptr;
    }
    auto state = stateRecord(snapshot, services_.store, appNames(services_.contents), services_.clock.now());
    return [state = std::move(state)] { return prettyJSON(state); };
  });
}

AppNames appNames(const SpaceContents& contents) {
  return [&contents](const Space& space) {
    std::vector<std::string> names;
    const auto& apps = contents.appsBySpace().get();
    if (const auto found = apps.find(space.managedID); found != apps.end()) {
      std::ranges::transform(found->second, std::back_inserter(names), &AppOnSpace::name);
    }
    return names;
  };
}

}  // namespace tallowin
