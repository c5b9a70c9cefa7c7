#pragma once

#include <expected>
#include <map>
#include <memory>
#include <string>

#include "platform/channel/channel_folder.h"
#include "platform/channel/channel_peer.h"
#include "platform/descriptors.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/pinned.h"
#include "platform/ways_in.h"

namespace tallowin {

/// The command channel as a Unix socket in the folder of the instance's lock. Main thread only.
class SocketCommandChannel : public CommandChannel, Pinned {
 public:
  struct Services {
    Descriptors& descriptors;
    MainQueue& mainQueue;
    Log& log;
    channel::Answerer answerer;  ///< what callers are told of this process
  };

  /// No more connections than this are served at once. The next one takes the place of the one that has been connected
  /// longest without asking; when all have asked, it is told so.
  static constexpr std::size_t maximumPeers = 256;

  /// Takes over the socket of an instance that has died. Requests may come from now on; they wait for a handler. The
  /// error is the system's description of why there is no socket.
  [[nodiscard]] static std::expected<std::unique_ptr<SocketCommandChannel>, std::string> open(
      Services services, std::unique_ptr<InstanceLock> lock);

  /// Lets the next instance start, then ends the answers that were to be ended last.
  ~SocketCommandChannel() override;

  void setHandler(Handler handler) override;

 private:
  /// A connection by its number; numbers are not used again.
  using PeerNumber = std::uint64_t;
  class PeerCaller;
  /// The connections that live. Shared with the callers, which may outlive the channel.
  using Peers = std::map<PeerNumber, std::unique_ptr<ChannelPeer>>;

  SocketCommandChannel(Services services, std::unique_ptr<InstanceLock> lock, OwnedDescriptor listener);

  void acceptAll();
  void pause(const std::string& why);
  void accept(OwnedDescriptor socket);
  [[nodiscard]] bool dropOneThatHasNotAsked();

  const Services services_;
  std::unique_ptr<InstanceLock> lock_;
  OwnedDescriptor listener_;
  Handler handler_;
  Subscription readable_;
  WorkItem resume_;
  PeerNumber lastNumber_ = 0;
  std::shared_ptr<Peers> peers_ = std::make_shared<Peers>();
};

}  // namespace tallowin
