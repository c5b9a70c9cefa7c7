#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <string>

namespace tallowin {

/// The most bytes that are taken as a request.
inline constexpr std::size_t largestTCPRequest = 16384;

/// Answers one request: all bytes that came with the first read in, all bytes of the reply out. An empty reply closes
/// the connection without one. Runs on the listener's own thread.
using TCPResponder = std::function<std::string(std::string request)>;

/// A running listener. Letting go of it closes it: the port is free and the responder is not called any more when that
/// returns. Replies that are on their way then still arrive; who has sent nothing yet gets none.
class TCPListener {
 public:
  virtual ~TCPListener() = default;
};

/// Serves one-shot requests on the loopback interface (Network framework, NWListener). Main thread only. No client can
/// make it wait: one that neither sends nor takes anything for 5 seconds is dropped, and no more than 256 are served at
/// a time, while others wait for their turn.
class TCPListeners {
 public:
  virtual ~TCPListeners() = default;

  /// Listens on 127.0.0.1 and, where there is IPv6, ::1, and on nothing else. Each connection is read once, answered
  /// and closed. The error is the system's description of why the port could not be opened.
  [[nodiscard]] virtual std::expected<std::unique_ptr<TCPListener>, std::string> listen(std::uint16_t port,
                                                                                        TCPResponder responder) = 0;
};

}  // namespace tallowin
