#include "platform/simulated/simulated_tcp_listeners.h"

namespace tallowin {

class SimulatedTCPListeners::Listener : public TCPListener {
 public:
  Listener(SimulatedTCPListeners& owner, std::uint16_t port) : owner_(owner), port_(port) {}
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;
  ~Listener() override {
    owner_.journal_.record("cancel", {{"port", port_}});
    owner_.open_.erase(port_);
  }

 private:
  SimulatedTCPListeners& owner_;
  const std::uint16_t port_;
};

std::expected<std::unique_ptr<TCPListener>, std::string> SimulatedTCPListeners::listen(std::uint16_t port,
                                                                                       TCPResponder responder) {
  const auto* const error = "Address already in use";
  if (state_.takenPorts.contains(port) || open_.contains(port)) {
    journal_.record("listen", {{"port", port}, {"error", error}});
    return std::unexpected(std::string(error));
  }
  journal_.record("listen", {{"port", port}});
  open_[port] = std::move(responder);
  return std::make_unique<Listener>(*this, port);
}

void SimulatedTCPListeners::request(std::uint16_t port, const std::string& bytes) {
  const auto found = open_.find(port);
  if (found == open_.end()) {
    journal_.record("respond", {{"port", port}, {"error", "Connection refused"}});
  } else if (!bytes.empty()) {
    journal_.record("respond", {{"port", port}, {"answer", found->second(bytes.substr(0, largestTCPRequest))}});
  }
}

}  // namespace tallowin
