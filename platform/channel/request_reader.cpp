#include "platform/channel/request_reader.h"

#include "platform/channel/channel_protocol.h"

namespace tallowin {

namespace {

/// Takes a text and its zero byte away from the front; nothing when there is no zero byte.
std::optional<std::string> takeText(std::string_view& bytes) {
  const auto end = bytes.find('\0');
  if (end == std::string_view::npos) {
    return std::nullopt;
  }
  std::string text(bytes.substr(0, end));
  bytes.remove_prefix(end + 1);
  return text;
}

}  // namespace

std::expected<std::optional<Request>, std::string> readRequest(std::string_view arrived) {
  if (arrived.size() < channel::lengthSize) {
    return std::nullopt;
  }
  const auto length = channel::readLength(arrived);
  if (length > channel::maximumRequest) {
    return std::unexpected("the request is too long");
  }
  auto texts = arrived.substr(channel::lengthSize);
  if (texts.size() < length) {
    return std::nullopt;
  }
  texts = texts.substr(0, length);
  if (takeText(texts) != channel::protocolName) {
    return std::unexpected("another version of tallowin is running; tell it to quit and start it again");
  }
  auto workingDirectory = takeText(texts);
  if (!workingDirectory) {
    return std::unexpected("the request is not complete");
  }
  Request request{{}, *std::move(workingDirectory)};
  while (!texts.empty()) {
    auto argument = takeText(texts);
    if (!argument) {
      return std::unexpected("the request is not complete");
    }
    request.arguments.push_back(*std::move(argument));
  }
  return request;
}

}  // namespace tallowin
