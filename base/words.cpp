#include "base/words.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cinttypes>
#include <cstdio>

#include "base/unicode.h"

namespace tallowin {

std::string padded(const std::string& text, std::size_t width) {
  return text + std::string(width - std::min(width, displayWidth(text)), ' ');
}

std::optional<std::int64_t> decimalInteger(std::string_view text) {
  // from_chars takes a minus sign but no plus sign.
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) {
      return std::nullopt;
    }
  }
  std::int64_t number = 0;
  const auto* const begin = text.data();
  const auto* const end = begin + text.size();
  const auto [stopped, error] = std::from_chars(begin, end, number);
  return error == std::errc() && stopped == end ? std::optional(number) : std::nullopt;
}

std::string randomUUID(const RandomBits& random) {
  constexpr std::uint64_t versionMask = 0xF000;
  constexpr std::uint64_t version4 = 0x4000;
  constexpr std::uint64_t variantMask = std::uint64_t{3} << 62;
  constexpr std::uint64_t variant = std::uint64_t{2} << 62;
  const std::uint64_t first = (random() & ~versionMask) | version4;
  const std::uint64_t second = (random() & ~variantMask) | variant;

  constexpr std::size_t length = 36;
  std::array<char, length + 1> text{};
  std::snprintf(text.data(), text.size(), "%08" PRIX64 "-%04" PRIX64 "-%04" PRIX64 "-%04" PRIX64 "-%012" PRIX64,
                first >> 32, (first >> 16) & 0xFFFF, first & 0xFFFF, second >> 48, second & 0xFFFF'FFFF'FFFF);
  return {text.data(), length};
}

void TextTable::add(const std::vector<std::string>& cells) {
  auto& row = rows_.emplace_back();
  for (const auto& cell : cells) {
    row.push_back(printable(cell));
  }
}

std::string TextTable::text() const {
  std::vector<std::size_t> widths(columns_.size());
  for (const auto& row : rows_) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      widths[i] = std::max(widths[i], displayWidth(row[i]));
    }
  }
  std::string text;
  for (const auto& row : rows_) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      line.append(i > 0 ? columns_[i].gap : 0, ' ');
      line += columns_[i].alignment == Alignment::right ? std::string(widths[i] - displayWidth(row[i]), ' ') + row[i]
                                                        : padded(row[i], widths[i]);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    text += line + '\n';
  }
  return text;
}

}  // namespace tallowin
