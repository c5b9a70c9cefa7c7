#include "commands/scripting/intents.h"

#include <algorithm>

#include "base/property_list_reading.h"
#include "base/unicode.h"

namespace tallowin {

namespace {

constexpr std::string_view applicationName = "Tallowin";

template <typename Command>
SpaceCommand toSpace(const PropertyList& value) {
  return Command{ScriptingBridge::ref(value)};
}

constexpr Intent allIntents[] = {
    {"SwitchSpaceIntent", "Switch to Space", IntentParameter{"space", "Space", "Desktop number or Space name"},
     toSpace<command::SwitchTo>},
    {"LastSpaceIntent", "Go Back to Last Space", std::nullopt,
     [](const PropertyList&) -> SpaceCommand { return command::Back{}; }},
    {"MoveWindowIntent", "Move Front Window to Space", IntentParameter{"space", "Space", ""},
     toSpace<command::MoveWindow>},
    {"SwitchProfileIntent", "Switch Tallowin Profile", IntentParameter{"profile", "Profile", ""},
     [](const PropertyList& value) -> SpaceCommand {
       return command::Profile{property_list::text(value).value_or("")};
     }},
    {"CurrentSpaceIntent", "Get Current Space Name", std::nullopt, nullptr},
};

constexpr AppShortcut shortcuts[] = {
    {"LastSpaceIntent", "Go back to my last space in ", "Last Space", "arrow.uturn.backward"},
    {"CurrentSpaceIntent", "Which space am I on in ", "Current Space", "rectangle.on.rectangle"},
};

}  // namespace

std::span<const Intent> intents() {
  return allIntents;
}

ScriptEvents::Result performIntent(const IntentEvent& event, const ScriptingBridge& bridge) {
  const auto* const intent = std::ranges::find(allIntents, event.intent, &Intent::name);
  if (intent == std::ranges::end(allIntents)) {
    return std::unexpected("there is no intent " + event.intent);
  }
  if (intent->answersText()) {
    return bridge.currentName();
  }
  const auto* const value =
      intent->parameter ? property_list::member(event.parameters, intent->parameter->name) : nullptr;
  bridge.send(intent->command(value != nullptr ? *value : PropertyList()));
  return nullptr;
}

std::span<const AppShortcut> TallowinShortcuts::appShortcuts() {
  return shortcuts;
}

ScriptEvents::Result performPhrase(const std::string& phrase, const ScriptingBridge& bridge) {
  const auto spoken = lowerCased(phrase);
  for (const auto& shortcut : shortcuts) {
    if (spoken == lowerCased(std::string(shortcut.phraseBeforeName).append(applicationName))) {
      return performIntent({std::string(shortcut.intent)}, bridge);
    }
  }
  return std::unexpected("there is no shortcut for \"" + phrase + "\"");
}

}  // namespace tallowin
