#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tallowin {

/// A boolean as it is printed.
[[nodiscard]] inline std::string trueOrFalse(bool value) {
  return value ? "true" : "false";
}

/// The text with blanks behind it up to so many columns of a terminal.
[[nodiscard]] std::string padded(const std::string& text, std::size_t width);

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

/// The whole text as a decimal integer: one sign at most, then ASCII digits and nothing else. Nothing for other texts
/// and beyond 64 bits.
[[nodiscard]] std::optional<std::int64_t> decimalInteger(std::string_view text);

/// 64-bit FNV-1a (http://www.isthe.com/chongo/tech/comp/fnv/): the same for the same bytes, now and ever.
constexpr std::uint64_t fnv1a(std::string_view bytes) {
  std::uint64_t hash = 0xcbf29ce484222325;
  for (const char byte : bytes) {
    hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001b3;
  }
  return hash;
}

/// Where random bits come from: every call answers 64 new ones. A simulation hands in a generator with a fixed start.
using RandomBits = std::function<std::uint64_t()>;

/// A random UUID (RFC 9562, version 4) as text, in upper case: "7C0E2B4A-93D1-4F6E-8A05-1B2C3D4E5F60".
[[nodiscard]] std::string randomUUID(const RandomBits& random);

/// Lines of cells for reading in a terminal.
class TextTable {
 public:
  enum class Alignment { left, right };

  struct Column {
    Alignment alignment = Alignment::left;
    std::size_t gap = 2;  ///< so many blanks before it, but for the first one
  };

  explicit TextTable(std::vector<Column> columns) : columns_(std::move(columns)) {}

  /// Adds a line, with one cell for each column. What would move the cursor is taken out.
  void add(const std::vector<std::string>& cells);

  /// The lines, columns aligned, without blanks at the ends.
  [[nodiscard]] std::string text() const;

 private:
  std::vector<Column> columns_;
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace tallowin
