#include "platform/channel/channel_peer.h"

#include <algorithm>
#include <cerrno>
#include <sys/socket.h>
#include <unistd.h>

namespace tallowin {

namespace {

/// Takes a text and its zero byte away from the front; nothing when there is no zero byte.
std::optional<std::string> takeText(std::string_view& bytes) {
  const auto end = bytes.find('\0');
  if (end == std::string_view::npos) {
    return std::nullopt;
  }
  std::string text(bytes.substr(0, end));
  bytes.remove_prefix(end + 1);
  return text;
}

constexpr int misunderstood = 69;  // EX_UNAVAILABLE (sysexits.h)

}  // namespace

std::expected<std::optional<Request>, std::string> readRequest(std::string_view arrived) {
  if (arrived.size() < channel::lengthSize) {
    return std::nullopt;
  }
  const auto length = channel::readLength(arrived);
  if (length > channel::maximumRequest) {
    return std::unexpected("the request is too long");
  }
  auto texts = arrived.substr(channel::lengthSize);
  if (texts.size() < length) {
    return std::nullopt;
  }
  texts = texts.substr(0, length);
  if (takeText(texts) != channel::protocolName) {
    return std::unexpected("another version of tallowin is running; tell it to quit and start it again");
  }
  auto workingDirectory = takeText(texts);
  if (!workingDirectory) {
    return std::unexpected("the request is not complete");
  }
  Request request{{}, *std::move(workingDirectory)};
  while (!texts.empty()) {
    auto argument = takeText(texts);
    if (!argument) {
      return std::unexpected("the request is not complete");
    }
    request.arguments.push_back(*std::move(argument));
  }
  return request;
}

using channel::FrameKind;

ChannelPeer::ChannelPeer(OwnedDescriptor socket, Descriptors& descriptors, MainQueue& queue, channel::Answerer answerer,
                         Events events)
    : socket_(std::move(socket)),
      descriptors_(descriptors),
      queue_(queue),
      answerer_(std::move(answerer)),
      events_(std::move(events)),
      patience_(queue.after(requestTime, [this] { close(); })) {}

void ChannelPeer::begin() {
  readMore();
  if (!gone_) {
    readable_ = descriptors_.watchReadable(socket_.get(), [this] { readMore(); });
  }
}

ChannelPeer::~ChannelPeer() {
  if (statusAtEnd_) {
    end(*statusAtEnd_);
  }
  readable_.cancel();
  writable_.cancel();
}

bool ChannelPeer::hasAskedByNow() {
  if (!requested_ && !gone_) {
    readMore();
  }
  return requested_;
}

void ChannelPeer::readMore() {
  constexpr std::size_t most = 65536;
  char bytes[most];
  const auto count = ::recv(socket_.get(), bytes, sizeof bytes, MSG_DONTWAIT);
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
    return;
  }
  if (count <= 0) {
    close();
    return;
  }
  if (requested_) {
    return;  // there is one request to a connection
  }
  arrived_.append(bytes, static_cast<std::size_t>(count));
  auto request = readRequest(arrived_);
  if (!request) {
    requested_ = true;
    send(FrameKind::err, "tallowin: " + request.error() + "\n");
    end(misunderstood);
  } else if (*request) {
    requested_ = true;
    patience_.cancel();
    arrived_.clear();
    events_.onRequest(*this, **std::move(request));
  }
}

bool ChannelPeer::send(FrameKind kind, std::string_view text) {
  if (ended_ || gone_) {
    return false;
  }
  if (!waiting_.empty() && waitingBytes_ - waiting_.front().size() > maximumWaiting) {
    drop();
    return false;
  }
  waiting_.push_back(channel::encodeFrame(kind, text));
  waitingBytes_ += waiting_.back().size();
  flush();
  return !gone_;
}

/// Keeps what has been begun, so that the reader finds whole frames and then the notice, whenever it reads again.
void ChannelPeer::drop() {
  waiting_.resize(1);
  waiting_.push_back(channel::encodeFrame(FrameKind::err, "tallowin: dropped, as nobody read for too long\n"));
  end(misunderstood);
}

void ChannelPeer::end(int status) {
  if (ended_ || gone_) {
    return;
  }
  waiting_.push_back(channel::encodeExit(status, answerer_));
  ended_ = true;
  flush();
}

void ChannelPeer::abandon() {
  if (!ended_ && !statusAtEnd_) {
    close();
  }
}

void ChannelPeer::flush() {
  while (!waiting_.empty() && !gone_) {
    const auto& frame = waiting_.front();
    const auto count = ::send(socket_.get(), frame.data() + sent_, frame.size() - sent_, MSG_NOSIGNAL | MSG_DONTWAIT);
    if (count < 0 && errno == EAGAIN) {
      if (!writable_) {
        writable_ = descriptors_.watchWritable(socket_.get(), [this] { flush(); });
      }
      return;
    }
    if (count < 0 && errno != EINTR) {
      close();
      return;
    }
    sent_ += count > 0 ? static_cast<std::size_t>(count) : 0;
    if (sent_ == frame.size()) {
      waitingBytes_ -= std::min(waitingBytes_, frame.size());
      waiting_.pop_front();
      sent_ = 0;
    }
  }
  writable_.cancel();
  if (ended_) {
    close();
  }
}

/// Says so in a turn of its own, as whoever is told destroys this peer, and may be on the way through it.
void ChannelPeer::close() {
  if (gone_) {
    return;
  }
  gone_ = true;
  readable_.cancel();
  writable_.cancel();
  patience_.cancel();
  ::shutdown(socket_.get(), SHUT_RDWR);
  going_ = queue_.after(Duration::zero(), [this] {
    if (const auto gone = std::exchange(whenGone_, nullptr)) {
      gone();
    }
    const auto onGone = events_.onGone;  // it goes with this peer
    onGone(*this);
  });
}

}  // namespace tallowin
