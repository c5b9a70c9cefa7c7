#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tallowin {

/// The head of an HTTP/1.1 request, taken apart as far as it arrived. Refers to the bytes that it was read from.
struct HTTPRequest {
  std::string_view method;
  std::string_view target;
  std::string_view headerLines;  ///< with their line ends, up to the empty line or the end of what arrived

  /// Nothing when the bytes are no UTF-8, or their first line has fewer than two words.
  [[nodiscard]] static std::optional<HTTPRequest> parse(std::string_view bytes);

  /// The value of a header, without surrounding white space; the last one's when there are several. `lowerCaseName` is
  /// compared with names in lower case.
  [[nodiscard]] std::optional<std::string_view> header(std::string_view lowerCaseName) const;
};

/// The bytes of an HTTP/1.1 answer after which the connection is closed. `status` is such as "200 OK"; `json` is the
/// body.
[[nodiscard]] std::string httpAnswer(std::string_view status, std::string_view json);

}  // namespace tallowin
