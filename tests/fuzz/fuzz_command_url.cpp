// Any text may be given as a command URL.

#include <algorithm>

#include "base/unicode.h"
#include "commands/command_url.h"
#include "tests/fuzz/fuzzing.h"

using namespace tallowin;

namespace {

/// The same URL with everything escaped that can be.
std::string written(const URL& url) {
  auto text = url.scheme + ":" + (url.host ? "//" + percentEncoded(*url.host) : "");
  for (const auto& component : url.pathComponents) {
    text += "/" + percentEncoded(component);
  }
  auto separator = "?";
  for (const auto& [name, value] : url.queryItems) {
    text += std::exchange(separator, "&") + percentEncoded(name) + (value ? "=" + percentEncoded(*value) : "");
  }
  return text;
}

void lookAtParts(const URL& url) {
  require(!url.scheme.empty() && isValidUTF8(url.host.value_or("")), "a URL has a scheme, and is text");
  for (const auto& component : url.pathComponents) {
    require(!component.empty() && component != "/" && isValidUTF8(component), "components are words");
  }
  for (const auto& [name, value] : url.queryItems) {
    require((!name.empty() || value) && isValidUTF8(name) && isValidUTF8(value.value_or("")), "items say something");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto url = URL::parse(inputText(data, size));
  static_cast<void>(URL::parseReference(inputText(data, size)));
  if (!url) {
    return 0;
  }
  lookAtParts(*url);
  const auto again = URL::parse(written(*url));
  require(again && again->scheme == url->scheme && again->host == url->host &&
              again->pathComponents == url->pathComponents && again->queryItems == url->queryItems,
          "escaping changes nothing");
  const auto command = commandFromURL(*url);
  require(command == commandFromURL(*again), "the same URL is the same command");
  if (!command) {
    require(std::ranges::count(url->queryItems, command.error().key, &URLQueryItem::name) > 1, "a key stands twice");
  }
  return 0;
}
