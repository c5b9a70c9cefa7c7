#pragma once

#include <expected>
#include <string>

#include "commands/space_command.h"

namespace tallowin {

/// Why a text is not performed, and one line that says so.
struct URLFault {
  enum class Kind {
    notURL,      ///< no URL at all
    unknown,     ///< a URL that is no command
    doubledKey,  ///< one whose query names a key twice, on which the process ends
    refused,     ///< a command that was understood, of which nothing was done
  };
  Kind kind = Kind::unknown;
  std::string message;
};

/// What a process ends with that was given such a text.
[[nodiscard]] int exitStatus(const URLFault& fault);

/// The command that the text of a tallowin:// URL stands for.
[[nodiscard]] std::expected<SpaceCommand, URLFault> commandFromText(const std::string& text);

}  // namespace tallowin
