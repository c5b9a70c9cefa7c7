#include "commands/http_message.h"

#include <algorithm>

#include "base/unicode.h"

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

}  // namespace

std::optional<HTTPRequest> HTTPRequest::parse(std::string_view bytes) {
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

std::optional<std::string_view> HTTPRequest::header(std::string_view lowerCaseName) const {
  std::optional<std::string_view> value;
  auto lines = headerLines;
  for (auto line = take(lines, lineEnd); !line.empty(); line = take(lines, lineEnd)) {
    const auto colon = line.find(':');
    if (colon != std::string_view::npos && lowerCased(line.substr(0, colon)) == lowerCaseName) {
      value = trimmed(line.substr(colon + 1));
    }
  }
  return value;
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
