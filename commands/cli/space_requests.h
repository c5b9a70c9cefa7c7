#pragma once

#include "commands/cli/request_job.h"
#include "core/space_store.h"
#include "core/space_watcher.h"
#include "core/state_feed.h"
#include "platform/alerts.h"
#include "platform/clock.h"
#include "platform/main_queue.h"

namespace tallowin {

/// Requests about the Spaces and about the running instance itself. Main thread only.
class SpaceRequests {
 public:
  struct Services {
    const Clock& clock;
    SpaceWatcher& watcher;
    SpaceStore& store;
    Storage& storage;
    StateFeed& feed;
    RunLoop& runLoop;
    Alerts& alerts;
    AppNames apps;
  };

  explicit SpaceRequests(Services services) : services_(std::move(services)) {}

  /// Makes this the one who answers them. It must outlive the table.
  void addTo(RequestTable& table);

 private:
  [[nodiscard]] bool haveSpaces(const RequestJob& job) const;
  void list(RequestJob job) const;
  void current(RequestJob job) const;
  void watch(RequestJob job) const;
  void answer(RequestJob job) const;
  void quit(RequestJob job) const;

  const Services services_;
};

}  // namespace tallowin
