// Any bytes may come over the command channel, in both directions.

#include "platform/channel/channel_protocol.h"
#include "platform/channel/channel_peer.h"
#include "tests/fuzz/fuzzing.h"

using namespace tallowin;

namespace {

void readAsRequest(std::string_view bytes) {
  const auto request = readRequest(bytes);
  if (!request || !*request) {
    return;
  }
  const auto sent = channel::encodeRequest((*request)->workingDirectory, (*request)->arguments);
  require(readRequest(sent) == request, "a request is read as it was sent");
  for (const auto arrived : {std::size_t{0}, channel::lengthSize, sent.size() - 1}) {
    const auto part = readRequest(std::string_view(sent).substr(0, arrived));
    require(part && !*part, "a part of a request waits for the rest");
  }
}

void readAsFrames(std::string_view bytes) {
  while (const auto frame = channel::firstFrame(bytes)) {
    const auto sent = channel::encodeFrame(frame->first, frame->second);
    require(bytes.starts_with(sent), "a frame is sent as it was read");
    require(!channel::firstFrame(std::string_view(sent).substr(0, sent.size() - 1)), "a part of a frame waits");
    bytes.remove_prefix(sent.size());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  readAsRequest(inputText(data, size));
  readAsFrames(inputText(data, size));
  return 0;
}
