// Any bytes may come over the command channel, in both directions.

#include "platform/channel/channel_peer.h"
#include "platform/channel/channel_protocol.h"
#include "tests/fuzz/fuzzing.h"

using namespace tallowin;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  auto bytes = inputText(data, size);
  if (const auto request = readRequest(bytes); request && *request) {
    const auto sent = channel::encodeRequest((*request)->workingDirectory, (*request)->arguments);
    require(readRequest(sent) == request, "a request is read as it was sent");
  }
  while (const auto frame = channel::firstFrame(bytes)) {
    const auto sent = channel::encodeFrame(frame->first, frame->second);
    require(bytes.starts_with(sent), "a frame is sent as it was read");
    bytes.remove_prefix(sent.size());
  }
  return 0;
}
