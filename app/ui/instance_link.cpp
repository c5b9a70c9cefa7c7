#include "app/ui/instance_link.h"

#include <QTimer>
#include <cerrno>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

#include "platform/channel/channel_folder.h"

namespace tallowin {

namespace {

bool sendAll(int socket, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto count = ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (count < 0 && errno != EINTR) {
      return false;
    }
    bytes.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
  }
  return true;
}

/// A connection to the instance; negative when nobody listens.
OwnedDescriptor connectIn(const std::string& folder) {
  const PrivateFolder place(folder, false);
  OwnedDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  const auto address = unixAddress(place.shortPath(channelSocketName));
  if (place.descriptor() < 0 || socket.get() < 0 ||
      ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    return {};
  }
  return socket;
}

}  // namespace

InstanceCall::InstanceCall(const std::string& folder, const std::vector<std::string>& words, Events events)
    : events_(std::move(events)), socket_(connectIn(folder)) {
  if (socket_.get() < 0 || !sendAll(socket_.get(), channel::encodeRequest("/", words))) {
    endSoon();
    return;
  }
  readable_ = std::make_unique<QSocketNotifier>(socket_.get(), QSocketNotifier::Read);
  QObject::connect(readable_.get(), &QSocketNotifier::activated, readable_.get(), [this] { readMore(); });
}

void InstanceCall::readMore() {
  constexpr std::size_t most = 65536;
  char bytes[most];
  const auto count = ::recv(socket_.get(), bytes, sizeof bytes, MSG_DONTWAIT);
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
    return;
  }
  arrived_.append(bytes, count > 0 ? static_cast<std::size_t>(count) : 0);
  while (const auto frame = channel::firstFrame(arrived_)) {
    const auto kind = frame->first;
    const std::string payload(frame->second);
    arrived_.erase(0, channel::frameHeaderSize + payload.size());
    events_.onFrame(kind, payload);
  }
  if (count <= 0) {
    readable_->setEnabled(false);
    endSoon();
  }
}

/// In a turn of its own, as whoever is told destroys this.
void InstanceCall::endSoon() {
  if (!readable_) {
    readable_ = std::make_unique<QSocketNotifier>(QSocketNotifier::Read);
  }
  QTimer::singleShot(0, readable_.get(), [this] {
    const auto onEnd = events_.onEnd;  // it goes with this call
    onEnd();
  });
}

struct SocketInstance::Asked {
  InstanceAnswer answer;
  std::unique_ptr<InstanceCall> call;
};

void SocketInstance::ask(const std::vector<std::string>& words, std::function<void(const InstanceAnswer&)> answered) {
  const auto asked = std::make_shared<Asked>();
  asked_.insert(asked);
  auto& answer = asked->answer;
  asked->call = std::make_unique<InstanceCall>(
      folder_, words,
      InstanceCall::Events{.onFrame =
                               [&answer](channel::FrameKind kind, std::string_view bytes) {
                                 if (kind == channel::FrameKind::exit) {
                                   answer.status = bytes.empty() ? 0 : static_cast<unsigned char>(bytes.front());
                                 } else {
                                   (kind == channel::FrameKind::out ? answer.out : answer.error).append(bytes);
                                 }
                               },
                           .onEnd =
                               [this, asked = std::weak_ptr(asked), answered = std::move(answered)] {
                                 const auto ended = asked.lock();
                                 asked_.erase(ended);
                                 answered(ended->answer);
                               }});
}

}  // namespace tallowin
