// Any text may be given as a command URL.

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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static_cast<void>(URL::parseReference(inputText(data, size)));
  if (const auto url = URL::parse(inputText(data, size))) {
    const auto again = URL::parse(written(*url));
    require(again && again->scheme == url->scheme && again->host == url->host &&
                again->pathComponents == url->pathComponents && again->queryItems == url->queryItems,
            "escaping changes nothing");
    require(commandFromURL(*url) == commandFromURL(*again), "the same URL is the same command");
  }
  return 0;
}
