#pragma once

#include "commands/cli/request_job.h"
#include "core/program_services.h"
#include "core/state_feed.h"

namespace tallowin {

/// Adds the requests about the Spaces and about the running instance itself.
void addSpaceRequests(RequestTable& table, const ProgramServices& services, StateFeed& feed, const AppNames& apps);

}  // namespace tallowin
