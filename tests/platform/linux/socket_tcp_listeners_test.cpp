// The real sockets: who is let in, and what clients of all kinds get.

#include <algorithm>
#include <arpa/inet.h>
#include <atomic>
#include <dirent.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>

#include "platform/linux/tcp_service.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;

class CountingLog : public Log {
 public:
  void write(Level /*level*/, std::string_view /*category*/, std::string_view /*message*/) override { ++lines; }
  std::atomic<int> lines = 0;
};

/// A client that waits no longer than anything here ever should.
class Client {
 public:
  explicit Client(std::uint16_t port, const char* host = "127.0.0.1", int receiveBuffer = 0) {
    const bool isIPv6 = std::string_view(host).find(':') != std::string_view::npos;
    socket_ = OwnedDescriptor(::socket(isIPv6 ? AF_INET6 : AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (receiveBuffer != 0) {
      ::setsockopt(socket_.get(), SOL_SOCKET, SO_RCVBUF, &receiveBuffer, sizeof receiveBuffer);
    }
    sockaddr_in address{.sin_family = AF_INET, .sin_port = htons(port), .sin_addr = {}, .sin_zero = {}};
    sockaddr_in6 longAddress{
        .sin6_family = AF_INET6, .sin6_port = htons(port), .sin6_flowinfo = 0, .sin6_addr = {}, .sin6_scope_id = 0};
    ::inet_pton(AF_INET, host, &address.sin_addr);
    ::inet_pton(AF_INET6, host, &longAddress.sin6_addr);
    isConnected_ = isIPv6 ? connect(longAddress) : connect(address);
  }

  [[nodiscard]] bool isConnected() const { return isConnected_; }

  void send(std::string_view bytes) const { ::send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL); }

  /// Everything up to the end of the connection; "reset" or "silence" instead of one.
  [[nodiscard]] std::string receive() const {
    std::string all;
    std::array<char, 4096> bytes{};
    while (true) {
      pollfd ready{socket_.get(), POLLIN, 0};
      if (::poll(&ready, 1, 60'000) != 1) {
        return "silence";
      }
      const auto count = ::recv(socket_.get(), bytes.data(), bytes.size(), 0);
      if (count <= 0) {
        return count == 0 ? all : "reset";
      }
      all.append(bytes.data(), static_cast<std::size_t>(count));
    }
  }

  [[nodiscard]] std::string ask(std::string_view request) const {
    send(request);
    return receive();
  }

 private:
  template <typename Address>
  [[nodiscard]] bool connect(const Address& address) const {
    return ::connect(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  }

  OwnedDescriptor socket_;
  bool isConnected_ = false;
};

/// A port that was free a moment ago.
std::uint16_t freePort() {
  const OwnedDescriptor socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  sockaddr_in address{.sin_family = AF_INET, .sin_port = 0, .sin_addr = {htonl(INADDR_LOOPBACK)}, .sin_zero = {}};
  socklen_t size = sizeof address;
  ::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), size);
  ::getsockname(socket.get(), reinterpret_cast<sockaddr*>(&address), &size);
  return ntohs(address.sin_port);
}

std::size_t openDescriptors() {
  std::size_t count = 0;
  DIR* const folder = ::opendir("/proc/self/fd");
  while (::readdir(folder) != nullptr) {
    ++count;
  }
  ::closedir(folder);
  return count;
}

/// More than what the system keeps for a reader with a small buffer.
const std::string large(std::size_t{8} << 20, 'x');
constexpr int smallBuffer = 65536;

bool eventually(const std::function<bool()>& condition) {
  const auto end = std::chrono::steady_clock::now() + 1min;
  while (!condition() && std::chrono::steady_clock::now() < end) {
    ::usleep(100);
  }
  return condition();
}

/// Answers how long the request was, and what it was if that is short.
std::string echo(const std::string& request) {
  return std::to_string(request.size()) + (request.size() < 100 ? " " + request : "");
}

class SocketTCPListenersTest : public testing::Test {
 protected:
  void open(const TCPLimits& limits, const TCPResponder& responder) {
    listeners.emplace(log, limits);
    auto opened = listeners->listen(port, [this, responder](const std::string& request) {
      ++answered;
      return responder(request);
    });
    ASSERT_TRUE(opened) << opened.error();
    listener = *std::move(opened);
  }

  CountingLog log;
  const std::uint16_t port = freePort();
  std::atomic<int> answered = 0;
  std::optional<SocketTCPListeners> listeners;
  std::unique_ptr<TCPListener> listener;
};

TEST_F(SocketTCPListenersTest, APortIsOneListenersAndFreeAtOnceAfterwards) {
  open({}, echo);
  const Client unread(port);
  EXPECT_EQ(Client(port).ask("a"), "1 a");
  SocketTCPListeners others(log);
  EXPECT_EQ(others.listen(port, echo).error(), "Address already in use");
  listener.reset();
  EXPECT_NE(unread.receive(), "silence") << "nobody would answer it";
  EXPECT_FALSE(Client(port).isConnected());
  const auto second = others.listen(port, echo);
  ASSERT_TRUE(second) << second.error();
  EXPECT_EQ(Client(port).ask("b"), "1 b");
}

TEST_F(SocketTCPListenersTest, TakesOneReadAndLosesNoAnswerToWhatIsLeft) {
  open({}, echo);
  EXPECT_EQ(Client(port).ask(std::string(1 << 20, 'x')), "16384");
  const Client inParts(port);
  inParts.send("first");
  EXPECT_TRUE(eventually([this] { return answered == 2; }));
  EXPECT_EQ(inParts.ask("second"), "5 first");
}

TEST_F(SocketTCPListenersTest, ASlowReaderGetsEverythingAlsoAfterThePortWasClosed) {
  open({}, [](const std::string&) { return large; });
  const Client slow(port, "127.0.0.1", smallBuffer);
  slow.send("hello");
  EXPECT_TRUE(eventually([this] { return answered == 1; }));
  EXPECT_EQ(Client(port).ask("hello").size(), large.size()) << "nobody waits for it";
  listener.reset();
  EXPECT_EQ(slow.receive().size(), large.size());
}

TEST_F(SocketTCPListenersTest, DropsWhoDoesNothing) {
  TCPLimits limits;
  limits.idle = 20ms;
  open(limits, [](const std::string&) { return large; });
  const auto before = openDescriptors();
  const Client lazy(port, "127.0.0.1", smallBuffer);
  lazy.send("hello");
  EXPECT_EQ(Client(port).receive(), "") << "it says nothing";
  EXPECT_TRUE(eventually([&] { return answered == 1 && openDescriptors() == before + 1; }));
  EXPECT_LT(lazy.receive().size(), large.size()) << "it did not read";
}

TEST_F(SocketTCPListenersTest, ManyWaitForTheirTurn) {
  TCPLimits limits;
  limits.connections = 16;
  open(limits, echo);
  const auto before = openDescriptors();
  {
    std::vector<Client> clients;
    for (int i = 0; i < 300; ++i) {
      clients.emplace_back(port);
    }
    EXPECT_TRUE(eventually([&] { return openDescriptors() == before + 300 + 16; })) << "no more than 16 at a time";
    std::ranges::for_each(clients, [](const Client& client) { client.send("hello"); });
    for (const auto& client : clients) {
      ASSERT_EQ(client.receive(), "5 hello");
    }
  }
  EXPECT_TRUE(eventually([&] { return openDescriptors() == before; })) << "none is leaked";
}

TEST_F(SocketTCPListenersTest, WithoutDescriptorsItWaitsForSome) {
  TCPLimits limits;
  limits.pause = 20ms;
  open(limits, echo);
  log.error("test", "the undefined-behaviour sanitizer takes a descriptor where it meets a class for the first time");
  rlimit usual{};
  ::getrlimit(RLIMIT_NOFILE, &usual);
  const auto next = static_cast<rlim_t>(OwnedDescriptor(::dup(STDERR_FILENO)).get());
  const rlimit oneLeft{next + 1, usual.rlim_max};
  ::setrlimit(RLIMIT_NOFILE, &oneLeft);
  const Client client(port);
  EXPECT_TRUE(eventually([this] { return log.lines >= 3; }));
  ::setrlimit(RLIMIT_NOFILE, &usual);
  EXPECT_EQ(client.ask("hello"), "5 hello");
  EXPECT_LT(log.lines, 1000) << "it does not try again and again at once";
}

}  // namespace
}  // namespace tallowin
