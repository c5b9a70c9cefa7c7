#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tallowin {

/// What the program is asked to do.
enum class Mode {
  resident,
  probe,
  switchSpace,
  capture,
  listSettings,
  getSetting,
  setSetting,
  unsetSetting,
  version,
  help,
  doctor  ///< where no instance runs that could be asked
};

/// Whether the mode reads or changes settings.
[[nodiscard]] constexpr bool isSettingsMode(Mode mode) {
  return mode >= Mode::listSettings && mode <= Mode::unsetSetting;
}

/// Who an option is for.
enum class OptionKind {
  diagnostic,  ///< a process of its own, wherever the option stands, as another option's value too
  ownProcess,  ///< a process of its own
  start,       ///< whoever becomes or starts the instance; the request to a running one goes without it
  word         ///< whoever reads the request
};

/// An argument that is understood, declared once: what reads the command line, the small program that every command
/// starts, --help, the manual and shells' completions use the same table.
struct CommandLineOption {
  std::string_view name;
  OptionKind kind;
  std::string_view sentence;                          ///< what it does, for people
  std::optional<Mode> mode = std::nullopt;            ///< of an option that asks for one
  std::array<std::string_view, 2> valueNames = {{}};  ///< of what must follow it; empty for less

  [[nodiscard]] constexpr std::span<const std::string_view> values() const {
    const auto count = valueNames[0].empty() ? 0U : valueNames[1].empty() ? 1U : 2U;
    return std::span(valueNames).first(count);
  }
};

namespace option_table {

using enum OptionKind;

inline constexpr CommandLineOption rows[] = {
    {"--probe", diagnostic, "Print what the desktop reports about its Spaces.", Mode::probe},
    {"--switch", diagnostic, "Switch to desktop N, and wait until that is seen.", Mode::switchSpace, {"N"}},
    {"classic", word, "With --switch N, by the desktop's own shortcuts from now on."},
    {"--capture", diagnostic, "Write a preview image of each visible Space.", Mode::capture},
    {"--settings-list", ownProcess, "List every setting with its value.", Mode::listSettings},
    {"--get", ownProcess, "Print a setting.", Mode::getSetting, {"KEY"}},
    {"--set", ownProcess, "Change a setting.", Mode::setSetting, {"KEY", "VALUE"}},
    {"--unset", ownProcess, "Go back to a setting's default.", Mode::unsetSetting, {"KEY"}},
    {"--version", ownProcess, "Print the version.", Mode::version},
    {"--help", ownProcess, "Print this text.", Mode::help},
    {"--platform", start, "Which desktop to work on (or set TALLOWIN_PLATFORM).", {}, {"auto|x11|simulated|none"}},
    {"--scenario", start, "Work on a simulated desktop, in real time.", {}, {"FILE"}},
    {"--simulate", ownProcess, "Work on a simulated desktop, in virtual time; its files stay in memory.", {}, {"FILE"}},
    {"--journal", ownProcess, "Write its journal there; without a mode it is printed.", {}, {"FILE"}},
    {"--home", start, "Keep data and settings below DIR.", {}, {"DIR"}},
    {"--port", start, "Open the HTTP interface (setting localAPI) on this port, not on 57301.", {}, {"N"}},
    {"--settings", start, "Open the settings window once started.", {}, {"TAB"}},
    {"--demo", start, "Start in demonstration mode."},
    {"--no-ui", start, "Show no windows; messages and questions are notifications."},
    {"--no-start", start, "Do not start Tallowin when it is not running."},
    {"--verbose", start, "Log to standard error too."},
};

}  // namespace option_table

/// All of them, in the order in which they are listed: first those that ask for a mode, then the others.
[[nodiscard]] constexpr std::span<const CommandLineOption> commandLineOptions() {
  return option_table::rows;
}

/// The option that is written so; null when there is none.
[[nodiscard]] constexpr const CommandLineOption* findOption(std::string_view argument) {
  for (const auto& option : commandLineOptions()) {
    if (option.name == argument) {
      return &option;
    }
  }
  return nullptr;
}

/// Whether the argument asks for a diagnostic mode.
[[nodiscard]] constexpr bool isDiagnostic(std::string_view argument) {
  const auto* const option = findOption(argument);
  return option != nullptr && option->kind == OptionKind::diagnostic;
}

/// What the small program that every command starts makes of its arguments.
struct FrontArguments {
  /// Whether the running instance can do it. Diagnostic modes, settings and simulations are done by a process of
  /// their own.
  bool forInstance = true;
  /// The folder after --home, or null.
  const char* home = nullptr;
  /// What the instance is asked for: everything but the options that only matter to a process that becomes it.
  std::vector<std::string> request;
};

/// Reads the arguments, without the program's own name, up to a null.
[[nodiscard]] FrontArguments readFrontArguments(const char* const* arguments);

}  // namespace tallowin
