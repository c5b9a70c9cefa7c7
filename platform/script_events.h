#pragma once

#include <expected>
#include <functional>
#include <string>

#include "platform/property_list.h"

namespace tallowin {

/// A command of the program's scripting dictionary, as a script sends it.
struct ScriptCommandEvent {
  std::string commandClass;                         ///< the class that the dictionary maps the script's term to
  PropertyList directParameter;                     ///< null for none
  PropertyList arguments = PropertyList::object();  ///< by their keys
};

/// An intent, as the system's shortcuts run it.
struct IntentEvent {
  std::string intent;                                ///< the name of its type
  PropertyList parameters = PropertyList::object();  ///< by their names
};

/// Commands from scripts and from the system's shortcuts. Main thread only.
class ScriptEvents {
 public:
  /// What comes back: the intent's value, null for none; or one line that says why there is no such command, intent or
  /// phrase.
  using Result = std::expected<PropertyList, std::string>;
  /// The program's side: one for a script's command, one for an intent.
  struct Handlers {
    std::function<Result(const ScriptCommandEvent&)> command;
    std::function<Result(const IntentEvent&)> intent;
    /// A phrase that the user has spoken to the program.
    std::function<Result(const std::string&)> phrase;
  };

  virtual ~ScriptEvents() = default;

  /// Makes these the receivers; a later call replaces them, and empty ones receive nothing.
  virtual void setHandlers(Handlers handlers) = 0;
};

}  // namespace tallowin
