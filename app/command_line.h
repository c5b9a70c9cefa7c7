#pragma once

#include <cstdint>
#include <expected>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/front/option_table.h"
#include "commands/http/local_api.h"

namespace tallowin {

/// Which desktop it works on. `automatic` is x11 where a window manager that speaks EWMH runs (for the resident
/// program: where there is an X server, as it can wait for one), else none.
enum class PlatformChoice { automatic, x11, simulated, none };

/// The platform as --platform names it.
[[nodiscard]] std::string_view nameOf(PlatformChoice platform);

/// The command line, understood.
struct CommandLine {
  Mode mode = Mode::resident;
  std::int64_t desktopNumber = 0;  ///< for switchSpace
  bool classic = false;            ///< for switchSpace
  std::string settingKey;          ///< for getSetting, setSetting and unsetSetting
  std::string settingValue;        ///< for setSetting, as written
  PlatformChoice platform = PlatformChoice::automatic;
  std::optional<std::filesystem::path> scenario;  ///< a simulated desktop in real time
  std::optional<std::filesystem::path> simulate;  ///< a simulated desktop in virtual time
  std::optional<std::filesystem::path> journal;   ///< where the simulation's journal goes
  std::optional<std::filesystem::path> home;      ///< keep everything below this folder
  std::optional<std::string> settingsTab;         ///< for resident: the tab that the settings window opens on
  bool demo = false;                              ///< for resident: in demonstration mode
  std::uint16_t port = LocalAPI::standardPort;    ///< for resident: where the HTTP interface is opened
  bool noUi = false;                              ///< for resident: show no windows
  bool verbose = false;
  bool noStart = false;              ///< for resident: when none is running, leave it at that
  std::string warning;               ///< one line for the user about what was passed over, or empty
  std::vector<std::string> request;  ///< for resident: what the running instance is asked for, or this one becoming it
  bool operator==(const CommandLine&) const = default;
};

/// Reads the arguments, without the program's own name. `environmentPlatform` is the value of TALLOWIN_PLATFORM, which
/// holds when the arguments name no platform. The error is one line that says what is wrong and what would be right.
[[nodiscard]] std::expected<CommandLine, std::string> parseCommandLine(
    std::span<const std::string> arguments, const std::optional<std::string>& environmentPlatform);

/// The option with what must follow it, such as "--get KEY".
[[nodiscard]] std::string usageOf(const CommandLineOption& option);

}  // namespace tallowin
