#pragma once

#include "automation/automation_runner.h"
#include "base/foreign_json.h"
#include "commands/cli/request_job.h"
#include "core/program_services.h"
#include "core/space_state.h"
#include "core/space_store.h"
#include "core/space_watcher.h"

namespace tallowin {

/// Requests that change what is said of one Space. Main thread only.
class EditRequests {
 public:
  EditRequests(const ProgramServices& services, AutomationRunner& automation, AppNames apps)
      : services_(services), automation_(automation), apps_(apps) {}

  /// Makes this the one who answers them. It must outlive the table.
  void addTo(RequestTable& table);

 private:
  void edit(RequestJob job) const;
  void automation(RequestJob job) const;
  /// The Space that the first operand names; if there is none, that has been answered.
  [[nodiscard]] std::optional<Space> space(const RequestJob& job) const;
  [[nodiscard]] bool refuse(const RequestJob& job) const;
  [[nodiscard]] std::expected<void, ForeignFault> lookAtIcon(const std::filesystem::path& image) const;
  void setAutomation(const RequestJob& job, const Space& space) const;

  const ProgramServices& services_;
  AutomationRunner& automation_;
  const AppNames apps_;
};

}  // namespace tallowin
