#include "app/scripting_channels.h"

#include "commands/scripting/intents.h"
#include "commands/scripting/scripting_bridge.h"

namespace tallowin {

ScriptingChannels::ScriptingChannels(Services services)
    : services_(std::move(services)),
      object_({services_.desktopService, services_.watcher, services_.store, services_.changes, bridge_,
               services_.openURL, services_.request, services_.underWay, services_.folders}) {}

ScriptingChannels::~ScriptingChannels() {
  services_.scriptEvents.setHandlers({});
}

void ScriptingChannels::open(std::function<void(const SpaceCommand&)> handler) {
  bridge_.handler = std::move(handler);
  bridge_.currentName = [this] {
    const auto space = current();
    return space ? services_.store.displayName(*space) : "";
  };
  bridge_.currentNumber = [this] {
    const auto space = current();
    return space ? space->desktopNumber.value_or(0) : 0;
  };
  bridge_.allNames = [this] {
    std::vector<std::string> names;
    for (const auto& space : services_.watcher.latest().allSpaces()) {
      names.push_back(services_.store.displayName(space));
    }
    return names;
  };
  services_.scriptEvents.setHandlers(
      {[this](const ScriptCommandEvent& event) { return performScriptCommand(event, bridge_); },
       [this](const IntentEvent& event) { return performIntent(event, bridge_); },
       [this](const std::string& phrase) { return performPhrase(phrase, bridge_); }});
  object_.offer();
}

std::optional<Space> ScriptingChannels::current() const {
  return services_.watcher.latest().activeSpace();
}

}  // namespace tallowin
