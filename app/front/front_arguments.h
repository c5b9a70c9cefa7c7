#pragma once

#include <string>
#include <vector>

namespace tallowin {

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
