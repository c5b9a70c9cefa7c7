#pragma once

#include <deque>
#include <expected>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/channel/channel_protocol.h"
#include "platform/descriptors.h"
#include "platform/main_queue.h"
#include "platform/pinned.h"
#include "platform/ways_in.h"

namespace tallowin {

/// The request that the bytes of a connection hold so far (channel_protocol.h): nothing while it is not complete. The
/// error is one line for the caller.
[[nodiscard]] std::expected<std::optional<Request>, std::string> readRequest(std::string_view arrived);

/// The listening end of one connection of the command channel: takes the request, sends the answer as fast as the other
/// end reads it. Main thread only.
class ChannelPeer : Pinned {
 public:
  /// Whoever connects must have sent its request by then.
  static constexpr Duration requestTime = std::chrono::seconds(10);
  /// When more bytes than this wait behind the frame that is being sent, the reader stalls, and is dropped with a
  /// notice at the next frame.
  static constexpr std::size_t maximumWaiting = std::size_t{256} << 10;

  /// What the connection leads to. onGone may destroy the peer.
  struct Events {
    std::function<void(ChannelPeer&, Request)> onRequest;
    std::function<void(ChannelPeer&)> onGone;
  };

  /// Owns the socket, which does not block. `answerer` is told to the other end.
  ChannelPeer(OwnedDescriptor socket, Descriptors& descriptors, MainQueue& queue, channel::Answerer answerer,
              Events events);
  ~ChannelPeer();

  /// Takes what has arrived with the connection, usually the whole request, and watches for more.
  void begin();

  /// Sends a frame, or keeps it until the other end reads. False when the other end has gone or the answer has ended.
  bool send(channel::FrameKind kind, std::string_view text);
  /// Ends the answer; the connection closes when everything has been read.
  void end(int status);
  /// Ends it without a status.
  void abandon();
  /// Makes the destructor end the answer with a status.
  void endAtDestruction(int status) { statusAtEnd_ = status; }
  /// Has `gone` called before onGone, in place of what was to be called.
  void whenGone(std::function<void()> gone) { whenGone_ = std::move(gone); }
  /// Takes what has arrived, and answers whether the other end has asked for something, understood or not.
  [[nodiscard]] bool hasAskedByNow();

 private:
  void readMore();
  void drop();
  void flush();
  void close();

  const OwnedDescriptor socket_;
  Descriptors& descriptors_;
  MainQueue& queue_;
  const channel::Answerer answerer_;
  const Events events_;

  std::string arrived_;
  bool requested_ = false;
  std::deque<std::string> waiting_;  ///< frames, the first one perhaps sent in part
  std::size_t sent_ = 0;             ///< bytes of the first one
  std::size_t waitingBytes_ = 0;
  bool ended_ = false;
  bool gone_ = false;
  std::optional<int> statusAtEnd_;
  std::function<void()> whenGone_;
  Subscription readable_;
  Subscription writable_;
  WorkItem patience_;
  WorkItem going_;
};

}  // namespace tallowin
