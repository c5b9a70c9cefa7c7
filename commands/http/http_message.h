#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tallowin {

/// The head of an HTTP/1.1 request, taken apart as far as it arrived. Refers to the bytes that it was read from.
struct HTTPRequest {
  std::string_view method;
  std::string_view target;
  std::string_view headerLines;  ///< with their line ends, up to the empty line or the end of what arrived

  /// Nothing when the bytes are no UTF-8, or their first line has fewer than two words. Of a request that is as long as
  /// the longest that is read, a last character that was cut is left out.
  [[nodiscard]] static std::optional<HTTPRequest> parse(std::string_view bytes);

  /// The values of a header's lines, without surrounding white space. `lowerCaseName` is compared with names in lower
  /// case.
  [[nodiscard]] std::vector<std::string_view> headers(std::string_view lowerCaseName) const;

  /// The last one.
  [[nodiscard]] std::optional<std::string_view> header(std::string_view lowerCaseName) const;

  /// Whether a line of the header "Host" names another machine than this one's own loopback names. A web page that has
  /// its own name lead to 127.0.0.1 cannot hide that name.
  [[nodiscard]] bool hasForeignHost() const;
};

/// The bytes of an HTTP/1.1 answer after which the connection is closed. `status` is such as "200 OK"; `json` is the
/// body.
[[nodiscard]] std::string httpAnswer(std::string_view status, std::string_view json);

}  // namespace tallowin
