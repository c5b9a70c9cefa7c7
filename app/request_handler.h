#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/request_words.h"
#include "app/state_feed.h"
#include "app/url_command.h"
#include "platform/command_channel.h"
#include "platform/main_queue.h"

namespace tallowin {

/// Does what other programs of the user's ask the running instance for. Main thread only.
class RequestHandler {
 public:
  struct Services {
    const Clock& clock;
    SpaceWatcher& watcher;
    SpaceStore& store;
    StateFeed& feed;
    RunLoop& runLoop;
    AppNames apps;
    /// Performs a URL, or answers why not.
    std::function<std::optional<URLFault>(const std::string& url)> openURL;
  };

  explicit RequestHandler(Services services);

  void handle(const Request& request, std::unique_ptr<Caller> caller);

 private:
  /// A request that has been understood, on its way to the answer.
  struct Job {
    const RequestWords& words;
    std::unique_ptr<Caller> caller;
  };

  void start(Job job) const;
  void openURL(Job job) const;
  void list(Job job) const;
  void current(Job job) const;
  void watch(Job job) const;
  void quit(Job job) const;

  const Services services_;
};

}  // namespace tallowin
