#include "automation/state_exporter.h"

#include <algorithm>

#include "base/json_text.h"

namespace tallowin {

namespace {

constexpr auto category = "StateExporter";

}  // namespace

StateExporter::StateExporter(Services services)
    : services_(services), writer_({services.files, services.workQueues, services.log}, "tallowin.state", category) {
  const auto changed = [this](const auto&...) { schedule(); };
  observers_.push_back(services_.watcher.snapshot().observeDidChange(changed));
  observers_.push_back(services_.store.observeWillChange(changed));
  observers_.push_back(services_.contents.appsBySpace().observeDidChange(changed));
}

void StateExporter::schedule() {
  pending_ = services_.mainQueue.after(delay, [this] { write(); });
}

void StateExporter::write() {
  const auto& snapshot = services_.watcher.snapshot().get();
  if (snapshot == SpaceSnapshot::empty()) {
    return;
  }
  const auto state = stateRecord(snapshot, services_.store, appNames(services_.contents), services_.clock.now());
  writer_.write(services_.paths.supportDirectory() / "state.json", prettyJSON(state));
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
