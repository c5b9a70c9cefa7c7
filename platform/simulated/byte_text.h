#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tallowin {

/// The bytes as Base64 with padding (RFC 4648, section 4).
[[nodiscard]] std::string base64(std::string_view bytes);

/// The bytes that such a text stands for; nothing when it is none.
[[nodiscard]] std::optional<std::string> bytesOfBase64(std::string_view text);

/// The bytes as lower-case hexadecimal digits.
[[nodiscard]] std::string hexadecimal(std::string_view bytes);

/// Whether JSON can carry the bytes as they are.
[[nodiscard]] bool isUTF8(std::string_view bytes);

}  // namespace tallowin
