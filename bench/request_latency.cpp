// How long it takes to do something once somebody has asked for it: from the request to the moment that a property has
// the new value. That is _NET_CURRENT_DESKTOP of the root window, for a switch; with WINDOW, _NET_WM_DESKTOP of that
// window, which is made the active one on the first desktop before each time and moved to the second. Subject 1 asks
// the running instance through its socket, with a connection for each request, as its front program does; subject 2
// asks the window manager through an xcb connection that is open.
//
// request_latency RUNS FOLDER [WINDOW]: the folder of the instance's socket

#include <sys/socket.h>
#include <thread>
#include <unistd.h>

#include "bench/desktop_witness.h"
#include "bench/side_by_side.h"
#include "bench/stopwatch.h"
#include "platform/channel/channel_folder.h"
#include "platform/channel/channel_protocol.h"

namespace {

using namespace tallowin::bench;
using namespace std::chrono_literals;

/// One request to the instance; its destructor waits for the end of the answer.
class Request {
 public:
  Request(const std::string& folder, const std::string& url)
      : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    const auto address = tallowin::unixAddress(folder + "/" + tallowin::channelSocketName);
    const auto bytes = tallowin::channel::encodeRequest("/", {url});
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

/// A window that is moved to the second desktop.
class MovedWindow {
 public:
  explicit MovedWindow(const std::string& number)
      : witness_("_NET_WM_DESKTOP", static_cast<xcb_window_t>(std::stoul(number, nullptr, 0))) {}

  [[nodiscard]] const DesktopWitness& witness() const { return witness_; }
  [[nodiscard]] bool putBack() const {
    if (!witness_.set(0)) {
      return false;
    }
    witness_.activate();
    std::this_thread::sleep_for(200ms);  // until everybody has seen it
    return true;
  }

 private:
  DesktopWitness witness_;
};

}  // namespace

int main(int argc, char** argv) {
  const Turns turns(argc, argv);
  const auto& folder = turns.commands[0];
  const auto moved = turns.commands.size() > 1 ? std::optional<MovedWindow>(turns.commands[1]) : std::nullopt;
  const auto shown = moved ? std::nullopt : std::optional<DesktopWitness>(std::in_place);
  const auto& witness = moved ? moved->witness() : *shown;
  const std::string url = moved ? "tallowin://move-window/" : "tallowin://switch/";
  const auto take = [&](std::size_t subject, std::size_t /*turn*/) -> std::optional<double> {
    if (moved && !moved->putBack()) {
      return std::nullopt;
    }
    const auto index = witness.other();
    const Stopwatch stopwatch;
    std::optional<Request> request;
    if (subject == 0) {
      request.emplace(folder, url + std::to_string(index + 1));
    } else {
      witness.ask(index);
    }
    const auto changed = !request || request->sent() ? witness.waitFor(index) : std::nullopt;
    return changed ? std::optional(stopwatch.until(*changed)) : std::nullopt;
  };
  return turns.measure(take, 2);
}
