#include "base/unicode.h"

#include <cstdlib>
#include <memory>
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

}  // namespace

bool isValidUTF8(std::string_view text) {
  const auto* at = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
  auto left = static_cast<utf8proc_ssize_t>(text.size());
  while (left > 0) {
    utf8proc_int32_t codepoint = 0;
    const auto length = utf8proc_iterate(at, left, &codepoint);
    if (length <= 0) {
      return false;
    }
    at += length;
    left -= length;
  }
  return true;
}

std::string lowerCased(std::string_view text) {
  return mapped(text, UTF8PROC_STABLE | UTF8PROC_COMPOSE, lower);
}

bool equalIgnoringCase(std::string_view a, std::string_view b) {
  return folded(a) == folded(b);
}

}  // namespace tallowin
