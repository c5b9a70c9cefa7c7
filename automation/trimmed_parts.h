#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tallowin {

/// The text without the white space at its ends (Unicode property White_Space).
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// The text split at every one of these ASCII characters, each part trimmed. Empty parts stay.
[[nodiscard]] std::vector<std::string> trimmedParts(std::string_view text, std::string_view separators);

}  // namespace tallowin
