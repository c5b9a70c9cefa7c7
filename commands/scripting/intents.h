#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "commands/scripting/scripting_bridge.h"
#include "platform/script_events.h"

namespace tallowin {

/// The one text that an intent asks for.
struct IntentParameter {
  std::string_view name;
  std::string_view title;
  std::string_view description;  ///< may be empty
};

/// Something that the system's shortcuts can have the program do, or ask it.
struct Intent {
  std::string_view name;
  std::string_view title;
  std::optional<IntentParameter> parameter;
  /// What it sends, made of the parameter's value; null for the one that asks for the current Space's name.
  SpaceCommand (*command)(const PropertyList& value);

  [[nodiscard]] bool answersText() const { return command == nullptr; }
};

/// All of them.
[[nodiscard]] std::span<const Intent> intents();

/// Sends what the intent stands for, or answers what it asks. It fails only when there is no such intent.
ScriptEvents::Result performIntent(const IntentEvent& event, const ScriptingBridge& bridge);

/// An intent that is offered ready-made, without being put into a shortcut first.
struct AppShortcut {
  std::string_view intent;
  std::string_view phraseBeforeName;  ///< the name of the application follows when it is spoken
  std::string_view shortTitle;
  std::string_view symbol;  ///< name of a system symbol image
};

/// What the program offers ready-made.
struct TallowinShortcuts {
  [[nodiscard]] static std::span<const AppShortcut> appShortcuts();
};

/// Performs the intent of the shortcut whose phrase this is, in upper or lower case. It fails only when it is none's.
ScriptEvents::Result performPhrase(const std::string& phrase, const ScriptingBridge& bridge);

}  // namespace tallowin
