#include "base/unicode.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <optional>
#include <utf8proc.h>

namespace tallowin {

namespace {

/// The text as utf8proc_map_custom makes it; unchanged if it is no UTF-8.
std::string mapped(std::string_view text, int options, utf8proc_custom_func function) {
  utf8proc_uint8_t* bytes = nullptr;
  const auto length = utf8proc_map_custom(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                                          static_cast<utf8proc_ssize_t>(text.size()), &bytes,
                                          static_cast<utf8proc_option_t>(options), function, nullptr);
  const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> owned(bytes, std::free);
  return length < 0 ? std::string(text)
                    : std::string(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length));
}

utf8proc_int32_t lower(utf8proc_int32_t codepoint, void* /*context*/) {
  return utf8proc_tolower(codepoint);
}

std::string folded(std::string_view text) {
  return mapped(text, UTF8PROC_STABLE | UTF8PROC_COMPOSE | UTF8PROC_CASEFOLD, nullptr);
}

/// Takes the first character away; nothing, and one byte, when it is no UTF-8.
std::optional<utf8proc_int32_t> takeCharacter(std::string_view& text) {
  utf8proc_int32_t codepoint = 0;
  const auto length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                                       static_cast<utf8proc_ssize_t>(text.size()), &codepoint);
  text.remove_prefix(length > 0 ? static_cast<std::size_t>(length) : 1);
  return length > 0 ? std::optional(codepoint) : std::nullopt;
}

bool isWhiteSpace(utf8proc_int32_t character) {
  constexpr utf8proc_int32_t nextLine = 0x85;
  switch (utf8proc_category(character)) {
    case UTF8PROC_CATEGORY_ZS:
    case UTF8PROC_CATEGORY_ZL:
    case UTF8PROC_CATEGORY_ZP:
      return true;
    default:
      return (character >= '\t' && character <= '\r') || character == nextLine;
  }
}

}  // namespace

bool isValidUTF8(std::string_view text) {
  while (!text.empty()) {
    if (!takeCharacter(text)) {
      return false;
    }
  }
  return true;
}

std::string lowerCased(std::string_view text) {
  return mapped(text, UTF8PROC_STABLE | UTF8PROC_COMPOSE, lower);
}

bool equalIgnoringCase(std::string_view a, std::string_view b) {
  return folded(a) == folded(b);
}

std::string printable(std::string_view text, std::string_view substitute) {
  std::string result;
  while (!text.empty()) {
    const auto before = text;
    const auto character = takeCharacter(text);
    const auto taken = before.substr(0, before.size() - text.size());
    const bool isControl = character && utf8proc_category(*character) == UTF8PROC_CATEGORY_CC;
    result += isControl ? substitute : taken;
  }
  return result;
}

std::string_view firstCharacters(std::string_view text, std::size_t count) {
  auto rest = text;
  for (; count > 0 && !rest.empty(); --count) {
    takeCharacter(rest);
  }
  return text.substr(0, text.size() - rest.size());
}

std::string_view charactersWithin(std::string_view text, std::size_t bytes) {
  std::size_t length = 0;
  for (auto rest = text; !rest.empty();) {
    takeCharacter(rest);
    if (text.size() - rest.size() > bytes) {
      break;
    }
    length = text.size() - rest.size();
  }
  return text.substr(0, length);
}

std::string_view trimmed(std::string_view text) {
  std::size_t begin = text.size();
  std::size_t end = 0;
  for (auto rest = text; !rest.empty();) {
    const auto at = text.size() - rest.size();
    const auto character = takeCharacter(rest);
    if (!character || !isWhiteSpace(*character)) {
      begin = std::min(begin, at);
      end = text.size() - rest.size();
    }
  }
  return text.substr(begin, std::max(begin, end) - begin);
}

std::size_t displayWidth(std::string_view text) {
  std::size_t width = 0;
  while (!text.empty()) {
    const auto character = takeCharacter(text);
    width += character ? static_cast<std::size_t>(utf8proc_charwidth(*character)) : 1;
  }
  return width;
}

}  // namespace tallowin
