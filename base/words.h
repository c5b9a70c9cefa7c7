#pragma once

namespace tallowin {

/// A boolean as it is printed.
[[nodiscard]] constexpr const char* trueOrFalse(bool value) {
  return value ? "true" : "false";
}

}  // namespace tallowin
