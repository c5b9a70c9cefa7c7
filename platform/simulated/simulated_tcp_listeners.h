#pragma once

#include <map>
#include <string>

#include "platform/simulated/desktop_state.h"
#include "platform/simulated/journal.h"
#include "platform/tcp_listener.h"

namespace tallowin {

/// Ports of the simulated machine. Listening, answering and ending to listen are lines of the journal. Main thread
/// only.
class SimulatedTCPListeners : public TCPListeners {
 public:
  SimulatedTCPListeners(const DesktopState& state, Journal& journal) : state_(state), journal_(journal) {}

  std::expected<std::unique_ptr<TCPListener>, std::string> listen(std::uint16_t port, TCPResponder responder) override;

  /// Another program connects to a port and sends a request, whose first read brings as much as a read takes.
  void request(std::uint16_t port, const std::string& bytes);

 private:
  class Listener;

  const DesktopState& state_;
  Journal& journal_;
  std::map<std::uint16_t, TCPResponder> open_;
};

}  // namespace tallowin
