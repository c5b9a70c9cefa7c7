#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tallowin {

/// The text split at every one of these ASCII characters, each part trimmed. Empty parts stay.
[[nodiscard]] std::vector<std::string> trimmedParts(std::string_view text, std::string_view separators);

}  // namespace tallowin
