#include "platform/simulated/base64.h"

#include <cstdint>

namespace tallowin {

namespace {

constexpr std::string_view base64Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

}  // namespace

std::string base64(std::string_view bytes) {
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const auto group = bytes.substr(i, 3);
    std::uint32_t bits = 0;
    for (std::size_t j = 0; j < 3; ++j) {
      bits = bits << 8 | (j < group.size() ? static_cast<unsigned char>(group[j]) : 0U);
    }
    for (std::size_t j = 0; j < 4; ++j) {
      text += j <= group.size() ? base64Digits[bits >> (18 - 6 * j) & 0x3F] : '=';
    }
  }
  return text;
}

std::optional<std::string> bytesOfBase64(std::string_view text) {
  if (text.size() % 4 != 0) {
    return std::nullopt;
  }
  const auto padding = text.ends_with("==") ? 2U : text.ends_with("=") ? 1U : 0U;
  text.remove_suffix(padding);
  std::string bytes;
  std::uint32_t bits = 0;
  unsigned pending = 0;
  for (const char c : text) {
    const auto digit = base64Digits.find(c);
    if (digit == std::string_view::npos) {
      return std::nullopt;
    }
    bits = bits << 6 | static_cast<std::uint32_t>(digit);
    pending += 6;
    if (pending >= 8) {
      pending -= 8;
      bytes += static_cast<char>(static_cast<unsigned char>(bits >> pending));
    }
  }
  return bytes;
}

}  // namespace tallowin
