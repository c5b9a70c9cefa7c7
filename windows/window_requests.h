#pragma once

#include "commands/cli/request_job.h"
#include "core/program_services.h"
#include "core/space_watcher.h"
#include "windows/window_services.h"

namespace tallowin {

/// Requests about windows. Main thread only.
class WindowRequests {
 public:
  WindowRequests(const ProgramServices& services, WindowServices& windows) : services_(services), windows_(windows) {}

  /// Makes this the one who answers them. It must outlive the table.
  void addTo(RequestTable& table);

 private:
  void windows(RequestJob job) const;
  void savedSpaces(RequestJob job) const;
  void reopen(RequestJob job) const;
  void pin(RequestJob job) const;
  void unpin(RequestJob job) const;
  void mark(RequestJob job) const;
  void jump(RequestJob job) const;

  [[nodiscard]] std::optional<std::string> bundleIDOf(const std::string& application) const;

  const ProgramServices& services_;
  WindowServices& windows_;
};

}  // namespace tallowin
