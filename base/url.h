#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tallowin {

/// One "name=value" of a query.
struct URLQueryItem {
  std::string name;
  std::optional<std::string> value;  ///< absent without "="
  bool operator==(const URLQueryItem&) const = default;
};

/// A URL taken apart (RFC 3986). Everything is percent-decoded after it was taken apart, so that an escaped separator
/// separates nothing; "+" stands for itself. Fragments are dropped.
struct URL {
  std::string scheme;                       ///< as written; empty in a relative reference
  std::optional<std::string> host;          ///< as written; absent without an authority, and when it is empty there
  std::string path;                         ///< as a whole, from its first "/" on if it has one
  std::vector<std::string> pathComponents;  ///< without empty ones and those that are exactly "/"
  std::vector<URLQueryItem> queryItems;     ///< in order, without those that have neither name nor value
  bool operator==(const URL&) const = default;

  /// Nothing for a text that is no URL with a scheme, or whose escapes make no UTF-8. Text beyond ASCII may stand
  /// unescaped.
  [[nodiscard]] static std::optional<URL> parse(std::string_view text);

  /// The same for a URL or a reference relative to one, such as "/path?name=value". Escapes may make any bytes here.
  [[nodiscard]] static std::optional<URL> parseReference(std::string_view text);
};

/// The text as a part of a URL, with everything but letters, digits, "-._~" and what is in `kept` escaped.
[[nodiscard]] std::string percentEncoded(std::string_view text, std::string_view kept = "");

/// The "file" URL of an absolute path (RFC 8089).
[[nodiscard]] std::string fileURL(const std::filesystem::path& path);

}  // namespace tallowin
