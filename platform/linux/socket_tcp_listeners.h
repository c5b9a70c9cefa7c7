#pragma once

#include <memory>

#include "platform/linux/tcp_service.h"

namespace tallowin {

/// Ports of this machine. All of them are served by one thread, which starts with the first.
class SocketTCPListeners : public TCPListeners {
 public:
  explicit SocketTCPListeners(Log& log, TCPLimits limits = {}) : log_(log), limits_(limits) {}

  std::expected<std::unique_ptr<TCPListener>, std::string> listen(std::uint16_t port, TCPResponder responder) override;

 private:
  Log& log_;
  const TCPLimits limits_;
  std::unique_ptr<TCPService> service_;
};

}  // namespace tallowin
