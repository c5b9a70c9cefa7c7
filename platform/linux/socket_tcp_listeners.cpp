#include "platform/linux/socket_tcp_listeners.h"

#include <cerrno>
#include <cstring>

#include "platform/linux/loopback_sockets.h"

namespace tallowin {

namespace {

class SocketTCPListener : public TCPListener {
 public:
  SocketTCPListener(TCPService& service, TCPService::EntranceID entrance) : service_(service), entrance_(entrance) {}
  SocketTCPListener(const SocketTCPListener&) = delete;
  SocketTCPListener& operator=(const SocketTCPListener&) = delete;
  ~SocketTCPListener() override { service_.close(entrance_); }

 private:
  TCPService& service_;
  const TCPService::EntranceID entrance_;
};

}  // namespace

std::expected<std::unique_ptr<TCPListener>, std::string> SocketTCPListeners::listen(std::uint16_t port,
                                                                                    TCPResponder responder) {
  auto sockets = openLoopbackSockets(port);
  if (!sockets) {
    return std::unexpected(sockets.error());
  }
  if (service_ == nullptr) {
    auto service = std::make_unique<TCPService>(log_, limits_);
    if (!service->isReady()) {
      return std::unexpected(std::string(std::strerror(EMFILE)));
    }
    service_ = std::move(service);
  }
  return std::make_unique<SocketTCPListener>(*service_, service_->open(*std::move(sockets), std::move(responder)));
}

}  // namespace tallowin
