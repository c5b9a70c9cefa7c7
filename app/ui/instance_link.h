#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/channel/channel_protocol.h"
#include "platform/descriptors.h"
#include "platform/pinned.h"
#include "presentation/widgets/instance.h"

namespace tallowin {

/// One request to the running instance, and what comes back. Main thread only.
class InstanceCall : Pinned {
 public:
  struct Events {
    std::function<void(channel::FrameKind kind, std::string_view bytes)> onFrame;
    /// The answer has ended, or the instance has gone. May destroy the call.
    std::function<void()> onEnd;
  };

  /// Connects to the socket in `folder` and sends the words. Where nobody listens that is the end, in the next turn.
  InstanceCall(const std::string& folder, const std::vector<std::string>& words, Events events);

 private:
  void readMore();
  void endSoon();

  const Events events_;
  OwnedDescriptor socket_;
  std::unique_ptr<QSocketNotifier> readable_;
  std::string arrived_;
};

/// The instance that listens in a folder (channel_folder.h).
class SocketInstance : public Instance, Pinned {
 public:
  explicit SocketInstance(std::string folder) : folder_(std::move(folder)) {}

  void ask(const std::vector<std::string>& words, std::function<void(const InstanceAnswer&)> answered) override;

 private:
  struct Asked;

  const std::string folder_;
  std::set<std::shared_ptr<Asked>> asked_;  ///< shared with the events of the call that it holds
};

}  // namespace tallowin
