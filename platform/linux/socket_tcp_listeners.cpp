#include <cerrno>
#include <cstring>
#include <netinet/in.h>
#include <sys/socket.h>

#include "platform/linux/tcp_service.h"
#include "platform/pinned.h"

namespace tallowin {

namespace {

/// Negative with errno when it failed.
template <typename Address>
OwnedDescriptor listenAt(const Address& address, int family) {
  constexpr int on = 1;
  OwnedDescriptor socket(::socket(family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  if (!socket) {
    return socket;
  }
  // Connections of the last run may linger in TIME_WAIT; two that listen at once are refused all the same.
  ::setsockopt(socket.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  if (family == AF_INET6) {
    ::setsockopt(socket.get(), IPPROTO_IPV6, IPV6_V6ONLY, &on, sizeof on);
  }
  if (::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
      ::listen(socket.get(), SOMAXCONN) == 0) {
    return socket;
  }
  const int error = errno;
  socket = OwnedDescriptor();
  errno = error;
  return socket;
}

OwnedDescriptor listenAtIPv4(std::uint16_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return listenAt(address, AF_INET);
}

OwnedDescriptor listenAtIPv6(std::uint16_t port) {
  sockaddr_in6 address{};
  address.sin6_family = AF_INET6;
  address.sin6_port = htons(port);
  address.sin6_addr = in6addr_loopback;
  return listenAt(address, AF_INET6);
}

/// Whether IPv6 is switched off.
bool isMissingAddress(int error) {
  return error == EADDRNOTAVAIL || error == EAFNOSUPPORT;
}

/// Listening sockets of a port on 127.0.0.1 and, unless the machine has no such address, on ::1. They neither block nor
/// are inherited by children, and the port is free again at once when they have been closed. The error is the system's
/// description.
std::expected<std::vector<OwnedDescriptor>, std::string> openLoopbackSockets(std::uint16_t port) {
  std::vector<OwnedDescriptor> sockets;
  for (const auto& listenAtFamily : {listenAtIPv4, listenAtIPv6}) {
    auto socket = listenAtFamily(port);
    if (socket) {
      sockets.push_back(std::move(socket));
    } else if (sockets.empty() || !isMissingAddress(errno)) {
      return std::unexpected(std::string(std::strerror(errno)));
    }
  }
  return sockets;
}

class SocketTCPListener : public TCPListener, Pinned {
 public:
  SocketTCPListener(TCPService& service, TCPService::EntranceID entrance) : service_(service), entrance_(entrance) {}
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
