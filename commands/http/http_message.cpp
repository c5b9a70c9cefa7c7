#include "commands/http/http_message.h"

#include <algorithm>
#include <bit>

#include "base/unicode.h"
#include "platform/ways_in.h"

namespace tallowin {

namespace {

constexpr std::string_view lineEnd = "\r\n";

/// Takes the text up to a separator away, with the separator.
std::string_view take(std::string_view& text, std::string_view separator) {
  const auto taken = text.substr(0, text.find(separator));
  text.remove_prefix(std::min(text.size(), taken.size() + separator.size()));
  return taken;
}

/// The same for words with any number of spaces between them. Empty when there is none left.
std::string_view takeWord(std::string_view& line) {
  line.remove_prefix(std::min(line.size(), line.find_first_not_of(' ')));
  return take(line, " ");
}

/// Without a last character of which only the first bytes are there.
std::string_view withoutCutCharacter(std::string_view bytes) {
  constexpr std::size_t longest = 4;
  for (std::size_t length = 1; length < longest && length <= bytes.size(); ++length) {
    const auto lead = static_cast<unsigned char>(bytes[bytes.size() - length]);
    if (lead >= 0xC0) {  // a character's first byte: its leading ones are the number of its bytes
      const auto whole = static_cast<std::size_t>(std::countl_one(lead));
      return bytes.substr(0, bytes.size() - (whole > length && whole <= longest ? length : 0));
    }
  }
  return bytes;
}

bool isOwnHost(std::string_view host) {
  const auto colon = host.rfind(':');
  const auto digits = colon != std::string_view::npos ? host.substr(colon + 1) : std::string_view();
  if (colon != std::string_view::npos && digits.find_first_not_of("0123456789") == std::string_view::npos) {
    host = host.substr(0, colon);
  }
  return host == "127.0.0.1" || host == "[::1]" || lowerCased(host) == "localhost";
}

}  // namespace

std::optional<HTTPRequest> HTTPRequest::parse(std::string_view bytes) {
  if (bytes.size() >= largestTCPRequest) {
    bytes = withoutCutCharacter(bytes);
  }
  if (!isValidUTF8(bytes)) {
    return std::nullopt;
  }
  HTTPRequest request;
  auto line = take(bytes, lineEnd);
  request.method = takeWord(line);
  request.target = takeWord(line);
  request.headerLines = bytes;
  return request.target.empty() ? std::nullopt : std::optional(request);
}

std::vector<std::string_view> HTTPRequest::headers(std::string_view lowerCaseName) const {
  std::vector<std::string_view> values;
  auto lines = headerLines;
  for (auto line = take(lines, lineEnd); !line.empty(); line = take(lines, lineEnd)) {
    const auto colon = line.find(':');
    if (colon != std::string_view::npos && lowerCased(line.substr(0, colon)) == lowerCaseName) {
      values.push_back(trimmed(line.substr(colon + 1)));
    }
  }
  return values;
}

std::optional<std::string_view> HTTPRequest::header(std::string_view lowerCaseName) const {
  const auto values = headers(lowerCaseName);
  return values.empty() ? std::nullopt : std::optional(values.back());
}

bool HTTPRequest::hasForeignHost() const {
  return !std::ranges::all_of(headers("host"), isOwnHost);
}

std::string httpAnswer(std::string_view status, std::string_view json) {
  std::string answer;
  constexpr std::size_t enoughForTheHead = 160;
  answer.reserve(enoughForTheHead + json.size());
  answer.append("HTTP/1.1 ").append(status);
  answer.append("\r\nContent-Type: application/json\r\nContent-Length: ").append(std::to_string(json.size()));
  answer.append("\r\nConnection: close\r\n\r\n").append(json);
  return answer;
}

}  // namespace tallowin
