#include "platform/linux/tcp_connection.h"

#include <cerrno>
#include <sys/socket.h>
#include <utility>

namespace tallowin {

namespace {

/// A failed call that may be made again when the socket is ready.
bool isNotReady() {
  return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

}  // namespace

TCPConnection::Wait TCPConnection::advance(std::span<char> scratch) {
  if (isAnswered()) {
    return drain(scratch);
  }
  if (!isUnread()) {
    return write();
  }
  const auto count = ::recv(socket_.get(), scratch.data(), scratch.size(), 0);
  if (count <= 0) {
    return count < 0 && isNotReady() ? Wait::toRead : Wait::over;
  }
  const auto& responder = *std::exchange(responder_, nullptr);
  answer_ = responder(std::string(scratch.data(), static_cast<std::size_t>(count)));
  return write();
}

TCPConnection::Wait TCPConnection::write() {
  while (sent_ < answer_.size()) {
    // MSG_MORE lets the end of the connection travel with the end of the answer.
    const auto count = ::send(socket_.get(), answer_.data() + sent_, answer_.size() - sent_, MSG_NOSIGNAL | MSG_MORE);
    if (count < 0) {
      return isNotReady() ? Wait::toWrite : Wait::over;
    }
    sent_ += static_cast<std::size_t>(count);
  }
  // Closing with bytes unread, or about to come, would reset the connection and take the answer with it. So this side
  // ends first, and the other side's end is waited for.
  ::shutdown(socket_.get(), SHUT_WR);
  return Wait::toRead;
}

/// One read at a time, so that a client that sends without end holds nobody up.
TCPConnection::Wait TCPConnection::drain(std::span<char> scratch) {
  const auto count = ::recv(socket_.get(), scratch.data(), scratch.size(), 0);
  return count > 0 || (count < 0 && isNotReady()) ? Wait::toRead : Wait::over;
}

}  // namespace tallowin
