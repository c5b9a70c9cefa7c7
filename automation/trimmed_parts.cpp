#include "automation/trimmed_parts.h"

#include <algorithm>
#include <iterator>

namespace tallowin {

namespace {

constexpr std::string_view whiteSpace[] = {" ",      "\t",     "\n",     "\v",     "\f",     "\r",     "\u0085",
                                           "\u00A0", "\u1680", "\u2000", "\u2001", "\u2002", "\u2003", "\u2004",
                                           "\u2005", "\u2006", "\u2007", "\u2008", "\u2009", "\u200A", "\u2028",
                                           "\u2029", "\u202F", "\u205F", "\u3000"};

}  // namespace

std::string_view trimmed(std::string_view text) {
  const auto leads = [&](std::string_view space) { return text.starts_with(space); };
  const auto trails = [&](std::string_view space) { return text.ends_with(space); };
  for (auto found = std::ranges::find_if(whiteSpace, leads); found != std::end(whiteSpace);
       found = std::ranges::find_if(whiteSpace, leads)) {
    text.remove_prefix(found->size());
  }
  for (auto found = std::ranges::find_if(whiteSpace, trails); found != std::end(whiteSpace);
       found = std::ranges::find_if(whiteSpace, trails)) {
    text.remove_suffix(found->size());
  }
  return text;
}

std::vector<std::string> trimmedParts(std::string_view text, std::string_view separators) {
  std::vector<std::string> parts;
  for (auto end = text.find_first_of(separators);; end = text.find_first_of(separators)) {
    parts.emplace_back(trimmed(text.substr(0, end)));
    if (end == text.npos) {
      return parts;
    }
    text.remove_prefix(end + 1);
  }
}

}  // namespace tallowin
