#include "windows/layout_file_name.h"

#include <algorithm>
#include <functional>

#include "base/unicode.h"

namespace tallowin {

namespace {

constexpr std::size_t longest = 120;
constexpr std::size_t keptCharacters = 60;

/// How many bytes the character at the beginning of a text takes.
std::size_t characterLength(std::string_view text) {
  constexpr std::size_t longestCharacter = 4;
  for (std::size_t length = 2; length <= std::min(longestCharacter, text.size()); ++length) {
    const bool begins = (static_cast<unsigned char>(text.front()) & 0xC0U) == 0xC0U;
    if (begins && isValidUTF8(text.substr(0, length))) {
      return length;
    }
  }
  return 1;
}

/// How many bytes the first `count` characters take; the whole text if it has no more.
std::size_t prefixLength(std::string_view text, std::size_t count) {
  std::size_t length = 0;
  for (; count > 0 && length < text.size(); --count) {
    length += characterLength(text.substr(length));
  }
  return length;
}

}  // namespace

std::string layoutFileName(std::string_view name, std::string_view displaySetup) {
  auto base = std::string(name) + "--" + std::string(displaySetup);
  std::ranges::replace(base, '/', '-');
  if (prefixLength(base, longest) < base.size()) {
    base = base.substr(0, prefixLength(base, keptCharacters)) + std::to_string(std::hash<std::string>{}(base));
  }
  return base + ".json";
}

}  // namespace tallowin
