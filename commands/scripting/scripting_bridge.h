#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "commands/space_command.h"
#include "platform/property_list.h"
#include "platform/ways_in.h"

namespace tallowin {

/// What scripts and intents reach of the program: where their commands go, and what they can ask. The application
/// controller owns the one there is and sets its members at start-up. Main thread only.
struct ScriptingBridge {
  /// Receives every command. While there is none, commands are dropped silently.
  std::function<void(const SpaceCommand&)> handler;
  /// The display name of the active Space of the menu-bar display; empty when there is none.
  std::function<std::string()> currentName = [] { return std::string(); };
  /// The desktop number of that Space; 0 for a full-screen Space and when there is none.
  std::function<std::int64_t()> currentNumber = [] { return std::int64_t{0}; };
  /// The display names of all Spaces of all displays, in the snapshot's order.
  std::function<std::vector<std::string>()> allNames = [] { return std::vector<std::string>(); };

  /// Hands a command to the handler, if there is one.
  void send(const SpaceCommand& command) const;

  /// The Space that a value of a script or an intent stands for. A number is the desktop with that number, reals
  /// without their fraction, and 0 the current Space; a text that is a decimal integer is a desktop number, 0 too, any
  /// other text a name, also "current". Nothing, and values of other types, stand for the current Space.
  [[nodiscard]] static SpaceRef ref(const PropertyList& value);
};

/// Sends what a script's command stands for; there is no value. It fails only when there is no such command.
ScriptEvents::Result performScriptCommand(const ScriptCommandEvent& event, const ScriptingBridge& bridge);

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
