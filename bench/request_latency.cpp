// How long a switch takes once somebody has asked for it: from the request to the moment that the root window's
// _NET_CURRENT_DESKTOP has the new value. Subject 1 asks the running instance through its socket, with a connection for
// each request, as its front program does; subject 2 asks the window manager through an xcb connection that is open.
//
// request_latency RUNS FOLDER: the folder of the instance's socket

#include <sys/socket.h>
#include <unistd.h>

#include "bench/desktop_witness.h"
#include "bench/side_by_side.h"
#include "bench/stopwatch.h"
#include "platform/channel/channel_folder.h"
#include "platform/channel/channel_protocol.h"

namespace {

using namespace tallowin::bench;

/// One request to the instance; its destructor waits for the end of the answer.
class Request {
 public:
  Request(const std::string& folder, std::uint32_t index) : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    const auto address = tallowin::unixAddress(folder + "/" + tallowin::channelSocketName);
    const auto bytes = tallowin::channel::encodeRequest("/", {"tallowin://switch/" + std::to_string(index + 1)});
    sent_ = ::connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
            ::write(socket_, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
  }
  ~Request() {
    char bytes[4096];
    while (sent_ && ::read(socket_, bytes, sizeof bytes) > 0) {
    }
    ::close(socket_);
  }
  Request(const Request&) = delete;
  Request& operator=(const Request&) = delete;

  [[nodiscard]] bool sent() const { return sent_; }

 private:
  int socket_;
  bool sent_ = false;
};

std::optional<double> askInstance(const DesktopWitness& witness, const std::string& folder) {
  const auto index = witness.other();
  const Stopwatch stopwatch;
  const Request request(folder, index);
  const auto changed = request.sent() ? witness.waitFor(index) : std::nullopt;
  return changed ? std::optional(stopwatch.until(*changed)) : std::nullopt;
}

std::optional<double> askWindowManager(const DesktopWitness& witness) {
  const auto index = witness.other();
  const Stopwatch stopwatch;
  witness.ask(index);
  const auto changed = witness.waitFor(index);
  return changed ? std::optional(stopwatch.until(*changed)) : std::nullopt;
}

}  // namespace

int main(int argc, char** argv) {
  const Turns turns(argc, argv);
  const DesktopWitness witness;
  const auto take = [&](std::size_t subject, std::size_t /*turn*/) {
    return subject == 0 ? askInstance(witness, turns.commands.front()) : askWindowManager(witness);
  };
  return turns.measure(take, 2);
}
