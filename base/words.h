#pragma once

#include <bitset>
#include <cstdint>
#include <string>
#include <string_view>

namespace tallowin {

/// A boolean as it is printed.
[[nodiscard]] inline std::string trueOrFalse(bool value) {
  return value ? "true" : "false";
}

/// A number in binary, without leading zeros.
[[nodiscard]] inline std::string binary(std::uint32_t bits) {
  const auto digits = std::bitset<32>(bits).to_string();
  const auto first = digits.find('1');
  return first == std::string::npos ? "0" : digits.substr(first);
}

/// The texts of a range, with a separator between any two.
[[nodiscard]] std::string joined(const auto& texts, std::string_view separator) {
  std::string all;
  for (const auto& text : texts) {
    all += all.empty() ? "" : separator;
    all += text;
  }
  return all;
}

}  // namespace tallowin
