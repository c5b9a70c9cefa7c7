#pragma once

#include <functional>
#include <optional>

#include "app/command_performer.h"
#include "commands/cli/request_job.h"
#include "commands/url_command.h"

namespace tallowin {

/// Requests that are commands: in words, whose outcome is waited for, and as URLs, of which it is told what is known at
/// once. Main thread only.
class CommandRequests {
 public:
  struct Services {
    CommandPerformer& performer;
    CommandsUnderWay& underWay;
    SpaceWatcher& watcher;
    SpaceStore& store;
    Storage& storage;
    /// Performs a URL, or answers why not.
    std::function<std::optional<URLFault>(const std::string& url)> openURL;
  };

  explicit CommandRequests(Services services) : services_(std::move(services)) {}

  /// Makes this the one who answers them. It must outlive the table.
  void addTo(RequestTable& table);

 private:
  void openURL(const RequestJob& job) const;
  void perform(const RequestJob& job) const;
  void switchTo(const RequestJob& job, const command::SwitchTo& command) const;
  [[nodiscard]] bool isActive(const SpaceRef& ref) const;

  const Services services_;
};

}  // namespace tallowin
