#pragma once

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>

#include "app/command_line.h"
#include "base/record_file.h"
#include "base/settings.h"
#include "core/program_services.h"
#include "core/space_provider.h"
#include "platform/platform.h"

namespace tallowin {

/// How the resident program is started.
struct LaunchOptions {
  std::optional<std::string> settingsTab;  ///< one of settingsTabs, which is opened then
  std::uint16_t port = 0;                  ///< where the HTTP interface is opened
};

/// Does what the command line asks for on a platform, whose files are written by way of `storage`, and answers the exit
/// status. Without a mode that is the resident program, until the run loop is stopped; what was accepted by then is in
/// its files, if they can be written. Everything but --version and --help, which need no platform.
int runProgram(const CommandLine& line, const Platform& platform, Storage& storage, std::ostream& out,
               std::ostream& error);

/// Which program this is.
[[nodiscard]] ProgramVersion programVersion();

}  // namespace tallowin
