#include "platform/channel/socket_command_channel.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tallowin {

using channel::FrameKind;

namespace {

constexpr auto socketCommandChannelCategory = "CommandChannel";
constexpr int busy = 69;  // EX_UNAVAILABLE (sysexits.h)

/// A listening socket at the path, or none and errno.
OwnedDescriptor listenAt(const std::string& path) {
  OwnedDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  const auto address = unixAddress(path);
  ::unlink(path.c_str());
  const bool listens = socket &&
                       ::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
                       ::listen(socket.get(), SOMAXCONN) == 0;
  const int error = errno;
  socket = listens ? std::move(socket) : OwnedDescriptor();
  errno = error;
  return socket;
}

}  // namespace

/// The caller at the other end of a connection that may have ended.
class SocketCommandChannel::PeerCaller : public Caller, Pinned {
 public:
  PeerCaller(std::weak_ptr<Peers> peers, PeerNumber number) : peers_(std::move(peers)), number_(number) {}
  ~PeerCaller() override {
    if (auto* peer = find()) {
      peer->abandon();
    }
  }

  bool out(std::string_view text) override { return send(FrameKind::out, text); }
  bool err(std::string_view text) override { return send(FrameKind::err, text); }

  void exit(int status) override {
    if (auto* peer = find()) {
      peer->end(status);
    }
  }

  void exitAtEnd(int status) override {
    if (auto* peer = find()) {
      peer->endAtDestruction(status);
    }
  }

  void whenGone(std::function<void()> gone) override {
    if (auto* peer = find()) {
      peer->whenGone(std::move(gone));
    }
  }

 private:
  bool send(FrameKind kind, std::string_view text) {
    auto* peer = find();
    return peer != nullptr && peer->send(kind, text);
  }

  [[nodiscard]] ChannelPeer* find() const {
    const auto peers = peers_.lock();
    const auto found = peers ? peers->find(number_) : Peers::iterator();
    return peers && found != peers->end() ? found->second.get() : nullptr;
  }

  const std::weak_ptr<Peers> peers_;
  const PeerNumber number_;
};

std::expected<std::unique_ptr<SocketCommandChannel>, std::string> SocketCommandChannel::open(
    Services services, std::unique_ptr<InstanceLock> lock) {
  auto listener = listenAt(lock->folder().shortPath(channelSocketName));
  if (!listener) {
    return std::unexpected(std::string(std::strerror(errno)));
  }
  return std::unique_ptr<SocketCommandChannel>(
      new SocketCommandChannel(std::move(services), std::move(lock), std::move(listener)));
}

SocketCommandChannel::SocketCommandChannel(Services services, std::unique_ptr<InstanceLock> lock,
                                           OwnedDescriptor listener)
    : services_(std::move(services)), lock_(std::move(lock)), listener_(std::move(listener)) {}

SocketCommandChannel::~SocketCommandChannel() {
  readable_.cancel();
  ::unlink(lock_->folder().shortPath(channelSocketName).c_str());
  listener_ = OwnedDescriptor();
  lock_->release();
  peers_->clear();
}

void SocketCommandChannel::setHandler(Handler handler) {
  handler_ = std::move(handler);
  readable_ = handler_ ? services_.descriptors.watchReadable(listener_.get(), [this] { acceptAll(); }) : Subscription();
}

void SocketCommandChannel::acceptAll() {
  while (true) {
    OwnedDescriptor socket(::accept4(listener_.get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (socket) {
      accept(std::move(socket));
    } else if (errno == EAGAIN) {
      return;
    } else if (errno != EINTR && errno != ECONNABORTED) {
      const std::string why = std::strerror(errno);
      if (!dropOneThatHasNotAsked()) {
        pause(why);
        return;
      }
    }
  }
}

/// With no descriptors left the listener would stay readable, and nothing could be done about it at once.
void SocketCommandChannel::pause(const std::string& why) {
  constexpr Duration soon = std::chrono::seconds(1);
  services_.log.error(socketCommandChannelCategory, "cannot accept a connection: " + why);
  readable_.cancel();
  resume_ = services_.mainQueue.after(soon, [this] { setHandler(handler_); });
}

/// Numbers rise, so the first one is the oldest.
bool SocketCommandChannel::dropOneThatHasNotAsked() {
  const auto idle = std::ranges::find_if(*peers_, [](const auto& entry) { return !entry.second->hasAskedByNow(); });
  if (idle == peers_->end()) {
    return false;
  }
  peers_->erase(idle);
  return true;
}

void SocketCommandChannel::accept(OwnedDescriptor socket) {
  const auto number = ++lastNumber_;
  auto peer =
      std::make_unique<ChannelPeer>(std::move(socket), services_.descriptors, services_.mainQueue, services_.answerer,
                                    ChannelPeer::Events{
                                        [this, number](ChannelPeer&, Request request) {
                                          handler_(request, std::make_unique<PeerCaller>(peers_, number));
                                        },
                                        [this, number](ChannelPeer&) { peers_->erase(number); },
                                    });
  if (peers_->size() >= maximumPeers && !dropOneThatHasNotAsked()) {
    services_.log.error(socketCommandChannelCategory, "too many programs ask at once");
    peer->send(FrameKind::err, "tallowin: too many programs ask at once\n");
    peer->end(busy);
    return;
  }
  peers_->emplace(number, std::move(peer)).first->second->begin();
}

}  // namespace tallowin
