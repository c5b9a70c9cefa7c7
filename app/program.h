#pragma once

#include <ostream>

#include "app/command_line.h"
#include "base/storage.h"
#include "platform/platform.h"

namespace tallowin {

/// Does what the command line asks for on a platform, whose files are written by way of `storage`, and answers the exit
/// status. Everything but --version and --help, which need no platform.
int runProgram(const CommandLine& line, const Platform& platform, Storage& storage, std::ostream& out,
               std::ostream& error);

}  // namespace tallowin
