#include "platform/x11/edid.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <numeric>

namespace tallowin {

namespace {

// The base block's layout, by byte offsets.
constexpr std::size_t blockLength = 128;
constexpr std::string_view header("\x00\xFF\xFF\xFF\xFF\xFF\xFF\x00", 8);
constexpr std::size_t makerOffset = 8;     // three letters of five bits, big-endian, A is 1
constexpr std::size_t productOffset = 10;  // 16 bits, little-endian
constexpr std::size_t serialOffset = 12;   // 32 bits, little-endian
constexpr std::size_t descriptorsOffset = 54;
constexpr std::size_t descriptorLength = 18;
constexpr std::string_view serialTextTag("\x00\x00\x00\xFF\x00", 5);

std::uint32_t byteAt(std::string_view bytes, std::size_t offset) {
  return static_cast<unsigned char>(bytes[offset]);
}

void appendHexadecimal(std::string& text, std::string_view littleEndian) {
  static constexpr auto digits = "0123456789ABCDEF";
  for (std::size_t i = littleEndian.size(); i > 0; --i) {
    text += digits[byteAt(littleEndian, i - 1) >> 4];
    text += digits[byteAt(littleEndian, i - 1) & 15];
  }
}

std::string maker(std::string_view edid) {
  const auto packed = byteAt(edid, makerOffset) << 8 | byteAt(edid, makerOffset + 1);
  std::string letters;
  for (const unsigned shift : {10U, 5U, 0U}) {
    letters += static_cast<char>('A' - 1 + (packed >> shift & 31));
  }
  return letters;
}

/// The printable characters of the serial descriptor up to its line feed; empty when there is none.
std::string serialText(std::string_view edid) {
  std::string text;
  for (auto offset = descriptorsOffset; offset + descriptorLength < blockLength; offset += descriptorLength) {
    const auto descriptor = edid.substr(offset, descriptorLength);
    if (descriptor.starts_with(serialTextTag)) {
      const auto line = descriptor.substr(serialTextTag.size());
      std::ranges::copy_if(line.substr(0, line.find('\n')), std::back_inserter(text),
                           [](char character) { return character > ' ' && character <= '~'; });
    }
  }
  return text;
}

}  // namespace

std::optional<std::string> monitorIdentity(std::string_view edid) {
  const auto block = edid.substr(0, blockLength);
  const auto add = [](unsigned sum, char byte) { return sum + static_cast<unsigned char>(byte); };
  if (block.size() < blockLength || !block.starts_with(header) ||
      std::accumulate(block.begin(), block.end(), 0U, add) % 256 != 0) {
    return std::nullopt;
  }
  std::string identity = maker(block) + '-';
  appendHexadecimal(identity, block.substr(productOffset, 2));
  identity += '-';
  appendHexadecimal(identity, block.substr(serialOffset, 4));
  if (const auto text = serialText(block); !text.empty()) {
    identity += '-' + text;
  }
  return identity;
}

}  // namespace tallowin
