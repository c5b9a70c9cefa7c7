#include "base/decimal_integer.h"

#include <charconv>

namespace tallowin {

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

}  // namespace tallowin
