#include "platform/channel/channel_client.h"

#include <cerrno>
#include <climits>
#include <poll.h>
#include <unistd.h>

#include "platform/channel/channel_folder.h"

namespace tallowin {

namespace {

using Outcome = HandOver::Outcome;

constexpr int outputFailed = 74;  // EX_IOERR (sysexits.h)

bool isRefusal(int error) {
  return error == ECONNREFUSED || error == ENOENT;
}

HandOver unreachable(const std::string& why) {
  return {Outcome::unreachable, 0, why, {}};
}

/// One conversation with the running instance.
class Conversation {
 public:
  explicit Conversation(const HandOverTerms& terms) : terms_(terms) {}

  /// Zero when connected, else errno.
  int connect(const std::string& path) {
    socket_ = OwnedDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const auto address = unixAddress(path);
    const bool connected =
        socket_ && ::connect(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    return connected ? 0 : errno;
  }

  [[nodiscard]] bool send(const std::string& request) const {
    std::size_t sent = 0;
    while (sent < request.size()) {
      const auto count = ::send(socket_.get(), request.data() + sent, request.size() - sent, MSG_NOSIGNAL);
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
        return unreachable("the running tallowin does not answer");
      }
      constexpr std::size_t most = 65536;
      char bytes[most];
      const auto count = ::recv(socket_.get(), bytes, sizeof bytes, 0);
      if (count < 0 && errno == EINTR) {
        continue;
      }
      if (count <= 0) {
        return answered_ ? unreachable("the running tallowin has gone away") : HandOver{};
      }
      arrived_.append(bytes, static_cast<std::size_t>(count));
      if (const auto status = printFrames(); status >= 0) {
        return {Outcome::answered, status, {}, answerer_};
      }
    }
  }

 private:
  [[nodiscard]] bool arrivesInTime() const {
    pollfd wanted{socket_.get(), POLLIN, 0};
    int ready = 0;
    do {
      ready = ::poll(&wanted, 1, terms_.patience);
    } while (ready < 0 && errno == EINTR);
    return ready > 0;
  }

  /// The exit status once the answer is complete, else a negative number.
  int printFrames() {
    while (const auto frame = channel::firstFrame(arrived_)) {
      const auto [kind, text] = *frame;
      answered_ = true;
      if (kind == channel::FrameKind::exit) {
        answerer_ = channel::readAnswerer(text);
        return text.empty() ? 0 : static_cast<unsigned char>(text[0]);
      }
      const int descriptor = kind == channel::FrameKind::out ? STDOUT_FILENO : STDERR_FILENO;
      if (!terms_.silent && !print(descriptor, text) && descriptor == STDOUT_FILENO) {
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

  const HandOverTerms terms_;
  OwnedDescriptor socket_;
  std::string arrived_;
  bool answered_ = false;
  channel::Answerer answerer_;
};

/// A number from the front of a version's text, which it takes away with the point behind it; 0 when there is none.
int takeNumber(std::string_view& version) {
  int number = 0;
  while (!version.empty() && version.front() >= '0' && version.front() <= '9') {
    number = 10 * number + (version.front() - '0');
    version.remove_prefix(1);
  }
  version.remove_prefix(version.empty() ? 0 : 1);
  return number;
}

bool isOlder(std::string_view version, std::string_view than) {
  while (!version.empty() || !than.empty()) {
    const int difference = takeNumber(version) - takeNumber(than);
    if (difference != 0) {
      return difference < 0;
    }
  }
  return false;
}

/// The display without the number of a screen, which all screens of a display share programs with: ":0" for ":0.1".
std::string_view withoutScreen(std::string_view display) {
  const auto point = display.rfind('.');
  return point != std::string_view::npos && point > display.rfind(':') ? display.substr(0, point) : display;
}

std::string workingDirectory() {
  char path[PATH_MAX];
  return ::getcwd(path, sizeof path) != nullptr ? path : "/";
}

}  // namespace

HandOver handOver(const std::string& folder, const std::vector<std::string>& arguments, const HandOverTerms& terms) {
  const auto request = channel::encodeRequest(workingDirectory(), arguments);
  if (request.size() > channel::maximumRequest) {
    return unreachable("the request is too long");
  }
  const PrivateFolder opened(folder, false);
  if (opened.descriptor() < 0) {
    return opened.isMissing() ? HandOver{} : unreachable(opened.error());
  }
  Conversation conversation(terms);
  if (const int error = conversation.connect(opened.shortPath(channelSocketName)); error != 0) {
    return isRefusal(error) ? HandOver{}
                            : unreachable(std::string("cannot reach the running tallowin: ") + std::strerror(error));
  }
  return conversation.send(request) ? conversation.takeAnswer() : HandOver{};
}

std::string remarksOn(const channel::Answerer& answerer, std::string_view ownVersion, const char* ownDisplay) {
  std::string lines;
  if (isOlder(answerer.version, ownVersion)) {
    lines += "tallowin: the running Tallowin is older than this one; restart it\n";
  }
  const std::string_view display = ownDisplay != nullptr ? ownDisplay : "";
  if (!display.empty() && !answerer.display.empty() && withoutScreen(display) != withoutScreen(answerer.display)) {
    lines += "tallowin: the running Tallowin works on display " + answerer.display + ", not on " +
             std::string(display) + "\n";
  }
  return lines;
}

}  // namespace tallowin
