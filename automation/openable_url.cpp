#include "automation/openable_url.h"

#include <algorithm>
#include <string_view>

#include "base/url.h"

namespace tallowin {

std::string fileURL(const std::filesystem::path& path) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  constexpr std::string_view unescaped =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";  // RFC 3986, unreserved
  std::string url = "file://";
  for (const char c : path.string()) {
    if (unescaped.find(c) != unescaped.npos) {
      url += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      url += {'%', digits[byte >> 4], digits[byte & 15]};
    }
  }
  return url;
}

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
