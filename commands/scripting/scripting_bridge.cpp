#include "commands/scripting/scripting_bridge.h"

#include <algorithm>
#include <optional>

#include "base/property_list_reading.h"
#include "base/unicode.h"
#include "base/words.h"

namespace tallowin {

namespace {

/// A command of the scripting dictionary.
struct ScriptCommand {
  std::string_view className;    ///< what the dictionary maps the script's term to
  std::string_view argumentKey;  ///< of its one argument, a text; empty for none
  /// What it sends, made of the direct parameter and the argument. Not all commands look at them.
  SpaceCommand (*command)(const SpaceRef& space, const std::optional<std::string>& argument);
};

/// The integer value of a number; nothing for what is no number or does not fit.
std::optional<std::int64_t> integerValue(const PropertyList& value) {
  constexpr double limit = 0x1p63;
  if (!value.is_number_float()) {
    return property_list::integer(value);
  }
  const auto real = value.get<double>();
  return real >= -limit && real < limit ? std::optional(static_cast<std::int64_t>(real)) : std::nullopt;
}

using ArgumentText = std::optional<std::string>;

constexpr ScriptCommand commands[] = {
    {"TWSwitchCommand", "",
     [](const SpaceRef& space, const ArgumentText&) -> SpaceCommand { return command::SwitchTo{space}; }},
    {"TWNextCommand", "", [](const SpaceRef&, const ArgumentText&) -> SpaceCommand { return command::Step{true}; }},
    {"TWPreviousCommand", "",
     [](const SpaceRef&, const ArgumentText&) -> SpaceCommand { return command::Step{false}; }},
    {"TWBackCommand", "", [](const SpaceRef&, const ArgumentText&) -> SpaceCommand { return command::Back{}; }},
    {"TWOverviewCommand", "", [](const SpaceRef&, const ArgumentText&) -> SpaceCommand { return command::Overview{}; }},
    {"TWMoveWindowCommand", "",
     [](const SpaceRef& space, const ArgumentText&) -> SpaceCommand { return command::MoveWindow{space}; }},
    {"TWRenameCommand", "name",
     [](const SpaceRef& space, const ArgumentText& name) -> SpaceCommand { return command::Rename{space, name}; }},
};

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

void ScriptingBridge::send(const SpaceCommand& command) const {
  if (handler) {
    handler(command);
  }
}

SpaceRef ScriptingBridge::ref(const PropertyList& value) {
  if (const auto text = property_list::text(value)) {
    const auto number = decimalInteger(*text);
    return number ? SpaceRef::number(*number) : SpaceRef::name(*text);
  }
  const auto number = integerValue(value).value_or(0);
  return number != 0 ? SpaceRef::number(number) : SpaceRef::current();
}

ScriptEvents::Result performScriptCommand(const ScriptCommandEvent& event, const ScriptingBridge& bridge) {
  const auto* const found = std::ranges::find(commands, event.commandClass, &ScriptCommand::className);
  if (found == std::ranges::end(commands)) {
    return std::unexpected("there is no scripting command " + event.commandClass);
  }
  bridge.send(found->command(ScriptingBridge::ref(event.directParameter),
                             property_list::member(event.arguments, found->argumentKey, property_list::text)));
  return nullptr;
}

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
  for (const auto& shortcut : TallowinShortcuts::appShortcuts()) {
    if (spoken == lowerCased(std::string(shortcut.phraseBeforeName).append(applicationName))) {
      return performIntent({std::string(shortcut.intent)}, bridge);
    }
  }
  return std::unexpected("there is no shortcut for \"" + phrase + "\"");
}

}  // namespace tallowin
