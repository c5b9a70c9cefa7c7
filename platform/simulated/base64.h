#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tallowin {

/// The bytes as Base64 with padding (RFC 4648, section 4).
[[nodiscard]] std::string base64(std::string_view bytes);

/// The bytes that such a text stands for; nothing when it is none.
[[nodiscard]] std::optional<std::string> bytesOfBase64(std::string_view text);

}  // namespace tallowin
