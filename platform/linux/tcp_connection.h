#pragma once

#include <chrono>
#include <span>
#include <string>

#include "platform/linux/owned_descriptor.h"
#include "platform/tcp_listener.h"

namespace tallowin {

/// One client: one read, one answer, and the end. Never waits.
class TCPConnection {
 public:
  using Time = std::chrono::steady_clock::time_point;

  /// What it waits for.
  enum class Wait { toRead, toWrite, over };

  /// `responder` must live until the request has been read.
  TCPConnection(OwnedDescriptor socket, const TCPResponder& responder)
      : socket_(std::move(socket)), responder_(&responder) {}

  /// Does what can be done now. `scratch` is room for one read; its content means nothing afterwards.
  Wait advance(std::span<char> scratch);

  /// Whether nothing has come yet, so that the responder is still needed.
  [[nodiscard]] bool isUnread() const { return responder_ != nullptr; }
  /// Whether only the client's end is waited for.
  [[nodiscard]] bool isAnswered() const { return !isUnread() && sent_ == answer_.size(); }

  /// When it is given up. For whoever keeps the connection.
  Time deadline = Time::max();

 private:
  Wait write();
  Wait drain(std::span<char> scratch);

  OwnedDescriptor socket_;
  const TCPResponder* responder_;
  std::string answer_;
  std::size_t sent_ = 0;
};

}  // namespace tallowin
