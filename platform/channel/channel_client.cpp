#include "platform/channel/channel_client.h"

#include <cerrno>
#include <climits>
#include <poll.h>
#include <unistd.h>

#include "platform/channel/channel_folder.h"
#include "platform/channel/channel_protocol.h"
#include "platform/channel/unix_socket.h"

namespace tallowin {

namespace {

using Outcome = HandOver::Outcome;

constexpr int answerMilliseconds = 5000;
constexpr int outputFailed = 74;  // EX_IOERR (sysexits.h)

bool isRefusal(int error) {
  return error == ECONNREFUSED || error == ENOENT;
}

/// One conversation with the running instance.
class Conversation {
 public:
  ~Conversation() {
    if (socket_ >= 0) {
      ::close(socket_);
    }
  }
  Conversation() = default;
  Conversation(const Conversation&) = delete;
  Conversation& operator=(const Conversation&) = delete;

  /// Zero when connected, else errno.
  int connect(const std::string& path) {
    socket_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const auto address = unixAddress(path);
    const bool connected =
        socket_ >= 0 && ::connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    return connected ? 0 : errno;
  }

  [[nodiscard]] bool send(const std::string& request) const {
    std::size_t sent = 0;
    while (sent < request.size()) {
      const auto count = ::send(socket_, request.data() + sent, request.size() - sent, MSG_NOSIGNAL);
      if (count < 0 && errno != EINTR) {
        return false;
      }
      sent += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    return true;
  }

  HandOver takeAnswer() {
    while (true) {
      if (!answered_ && !arrivesInTime()) {
        return {Outcome::unreachable, 0, "the running tallowin does not answer"};
      }
      constexpr std::size_t most = 65536;
      char bytes[most];
      const auto count = ::recv(socket_, bytes, sizeof bytes, 0);
      if (count < 0 && errno == EINTR) {
        continue;
      }
      if (count <= 0) {
        return answered_ ? HandOver{Outcome::unreachable, 0, "the running tallowin has gone away"} : HandOver{};
      }
      arrived_.append(bytes, static_cast<std::size_t>(count));
      if (const auto status = printFrames(); status >= 0) {
        return {Outcome::answered, status, {}};
      }
    }
  }

 private:
  [[nodiscard]] bool arrivesInTime() const {
    pollfd wanted{socket_, POLLIN, 0};
    int ready = 0;
    do {
      ready = ::poll(&wanted, 1, answerMilliseconds);
    } while (ready < 0 && errno == EINTR);
    return ready > 0;
  }

  /// The exit status once the answer is complete, else a negative number.
  int printFrames() {
    while (const auto frame = channel::firstFrame(arrived_)) {
      const auto [kind, text] = *frame;
      answered_ = true;
      if (kind == channel::FrameKind::exit) {
        return text.empty() ? 0 : static_cast<unsigned char>(text[0]);
      }
      const int descriptor = kind == channel::FrameKind::out ? STDOUT_FILENO : STDERR_FILENO;
      if (!print(descriptor, text) && descriptor == STDOUT_FILENO) {
        return outputFailed;
      }
      arrived_.erase(0, channel::frameHeaderSize + text.size());
    }
    return -1;
  }

  static bool print(int descriptor, std::string_view text) {
    while (!text.empty()) {
      const auto count = ::write(descriptor, text.data(), text.size());
      if (count < 0 && errno != EINTR) {
        return false;
      }
      text.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return true;
  }

  int socket_ = -1;
  std::string arrived_;
  bool answered_ = false;
};

std::string workingDirectory() {
  char path[PATH_MAX];
  return ::getcwd(path, sizeof path) != nullptr ? path : "/";
}

}  // namespace

HandOver handOver(const std::string& folder, const std::vector<std::string>& arguments) {
  const auto request = channel::encodeRequest(workingDirectory(), arguments);
  if (request.size() > channel::maximumRequest) {
    return {Outcome::unreachable, 0, "the request is too long"};
  }
  const PrivateFolder opened(folder, false);
  if (opened.descriptor() < 0) {
    return opened.isMissing() ? HandOver{} : HandOver{Outcome::unreachable, 0, opened.error()};
  }
  Conversation conversation;
  if (const int error = conversation.connect(opened.shortPath(channelSocketName)); error != 0) {
    return isRefusal(error) ? HandOver{}
                            : HandOver{Outcome::unreachable, 0,
                                       std::string("cannot reach the running tallowin: ") + std::strerror(error)};
  }
  return conversation.send(request) ? conversation.takeAnswer() : HandOver{};
}

}  // namespace tallowin
