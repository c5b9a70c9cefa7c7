#include "automation/trimmed_parts.h"

#include "base/unicode.h"

namespace tallowin {

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
