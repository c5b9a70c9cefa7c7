#pragma once

#include "commands/cli/request_job.h"
#include "core/program_services.h"
#include "core/state_feed.h"

namespace tallowin {

/// Requests about the Spaces and about the running instance itself. Main thread only.
class SpaceRequests {
 public:
  SpaceRequests(const ProgramServices& services, StateFeed& feed, AppNames apps)
      : services_(services), feed_(feed), apps_(std::move(apps)) {}

  /// Makes this the one who answers them. It must outlive the table.
  void addTo(RequestTable& table);

 private:
  [[nodiscard]] bool haveSpaces(const RequestJob& job) const;
  void list(RequestJob job) const;
  void current(RequestJob job) const;
  void watch(RequestJob job) const;
  void answer(RequestJob job) const;
  void quit(RequestJob job) const;

  const ProgramServices& services_;
  StateFeed& feed_;
  const AppNames apps_;
};

}  // namespace tallowin
