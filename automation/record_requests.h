#pragma once

#include <functional>

#include "automation/record_services.h"
#include "commands/cli/request_job.h"
#include "commands/outcome.h"
#include "commands/space_command.h"

namespace tallowin {

/// Requests about profiles, templates, times and what moves between machines. Main thread only.
class RecordRequests {
 public:
  /// Carries out a command, and tells how it went.
  using Perform = std::function<void(const SpaceCommand&, OutcomeHandler)>;

  RecordRequests(const ProgramServices& services, RecordServices& records, Perform perform)
      : services_(services), records_(records), perform_(std::move(perform)) {}

  /// Makes this the one who answers them. It must outlive the table.
  void addTo(RequestTable& table);

 private:
  void profile(RequestJob job) const;
  void listProfiles(const RequestJob& job) const;
  void saveProfile(const RequestJob& job, const std::string& name) const;
  void deleteProfile(const RequestJob& job, const std::string& name) const;
  void useProfile(const RequestJob& job, const std::string& name) const;
  void useProfileAutomatically(const RequestJob& job, const std::string& name) const;
  void useNoProfileAutomatically(const RequestJob& job) const;
  void chooseProfile(const RequestJob& job, const std::optional<std::string>& name) const;
  void layTemplate(RequestJob job) const;
  void listTemplates(const RequestJob& job) const;
  void applyTemplate(const RequestJob& job, const std::string& name) const;
  void importTemplate(const RequestJob& job, const std::string& file) const;
  void exportFile(RequestJob job) const;
  void importFile(RequestJob job) const;
  void restore(RequestJob job) const;
  void time(RequestJob job) const;
  void diagnostics(RequestJob job) const;

  const ProgramServices& services_;
  RecordServices& records_;
  const Perform perform_;
};

}  // namespace tallowin
