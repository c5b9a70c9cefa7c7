#include "automation/openable_url.h"

#include <algorithm>

#include "base/url.h"

namespace tallowin {

std::optional<std::string> openableURL(const std::string& text, const std::filesystem::path& home) {
  if (text.find("://") != text.npos) {
    return URL::parse(text) ? std::optional(text) : std::nullopt;
  }
  if (text.empty()) {
    return std::nullopt;
  }
  const bool belowHome = text == "~" || text.starts_with("~/");
  return fileURL(home / (belowHome ? text.substr(std::min<std::size_t>(2, text.size())) : text));
}

}  // namespace tallowin
