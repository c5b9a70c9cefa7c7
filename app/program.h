#pragma once

#include <ostream>

#include "app/command_line.h"
#include "platform/platform.h"

namespace tallowin {

/// Does what the command line asks for on a platform, and answers the exit status. Everything but --version and --help,
/// which need no platform.
int runProgram(const CommandLine& line, const Platform& platform, std::ostream& out, std::ostream& error);

}  // namespace tallowin
