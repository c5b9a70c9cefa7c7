#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tallowin {

/// Scripts that ask other applications (NSAppleScript). Main thread only.
class AppleScript {
 public:
  virtual ~AppleScript() = default;

  /// Runs a script to its end and returns the texts of its result: the items of a list, or the one value. Nothing when
  /// it fails or the system has no such scripts.
  virtual std::optional<std::vector<std::string>> executeAndReturnError(std::string_view source) = 0;
};

}  // namespace tallowin
