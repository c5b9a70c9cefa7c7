#pragma once

#include <functional>

#include "automation/automation_runner.h"
#include "automation/record_services.h"
#include "commands/cli/request_job.h"
#include "commands/outcome.h"
#include "commands/space_command.h"
#include "core/space_state.h"

namespace tallowin {

/// Carries out a command, and tells how it went.
using PerformCommand = std::function<void(const SpaceCommand&, OutcomeHandler)>;

// What is handed in must outlive the table. Main thread only.

/// Has requests about profiles, templates, times and what moves between machines answered.
void addRecordRequests(RequestTable& table, const ProgramServices& services, RecordServices& records,
                       const PerformCommand& perform);

/// The same for requests that change what is said of one Space.
void addEditRequests(RequestTable& table, const ProgramServices& services, AutomationRunner& automation,
                     const AppNames& apps);

}  // namespace tallowin
