#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/setting_enumerations.h"
#include "core/space.h"
#include "platform/desktop.h"
#include "platform/desktop_facts.h"

namespace tallowin {

/// Which program this is.
struct ProgramVersion {
  std::string version;
  std::string build;
};

/// What the diagnostics report tells.
struct DiagnosticFacts {
  ProgramVersion program;
  std::string system;  ///< its name and version
  CGSBridgeHealth health;
  bool accessibility = false;
  bool screenRecording = false;
  SwitchMode switchMode = SwitchMode::instant;
  std::size_t displays = 0;
  std::size_t spaces = 0;
  std::vector<SetUpCheck> checks;
  std::vector<std::string> shortcutFailures;  ///< names of shortcuts that other programs have taken
  std::string displaySet;  ///< the key under which layouts and profiles know the connected displays; empty for none
  std::optional<std::string> distribution;
  std::optional<WindowManagerFacts> windowManager;
};

/// The report that users paste into a support request, one fact a line, without a line feed at the end. What is known
/// only of some systems comes last.
[[nodiscard]] std::string diagnosticsText(const DiagnosticFacts& facts);

/// The value of PRETTY_NAME in a file in the form of os-release(5); nothing when it has none.
[[nodiscard]] std::optional<std::string> prettyNameOfOSRelease(std::string_view text);

}  // namespace tallowin
