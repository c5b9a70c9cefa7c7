#pragma once

#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <string>

namespace tallowin {

/// Answers one request: all bytes that came with the first read in, all bytes of the reply out. Runs on the listener's
/// own thread.
using TCPResponder = std::function<std::string(std::string request)>;

/// A running listener. Letting go of it closes it; connections being answered are finished first.
class TCPListener {
 public:
  virtual ~TCPListener() = default;
};

/// Serves one-shot requests on the loopback interface (Network framework, NWListener). Main thread only.
class TCPListeners {
 public:
  virtual ~TCPListeners() = default;

  /// Listens on 127.0.0.1 and ::1 and nothing else. Each connection is read once, answered and closed. The error is
  /// the system's description of why the port could not be opened.
  [[nodiscard]] virtual std::expected<std::unique_ptr<TCPListener>, std::string> listen(std::uint16_t port,
                                                                                        TCPResponder responder) = 0;
};

}  // namespace tallowin
