#pragma once

#include <ostream>
#include <vector>

#include "app/command_line.h"
#include "base/settings.h"
#include "commands/cli/request_job.h"
#include "platform/platform.h"

namespace tallowin {

/// What works here, what does not, and what to do about it.
struct DoctorReport {
  bool isRunning = false;
  std::vector<SetUpCheck> checks;
};

/// The report of the running instance. `port` is where it serves other programs by HTTP; nothing where it does not.
[[nodiscard]] DoctorReport reportOfInstance(std::vector<SetUpCheck> checks, const Settings& settings,
                                            std::optional<std::uint16_t> port);

/// Answers `doctor`: with 1 where something needs attention.
void answerDoctor(const RequestJob& job, const DoctorReport& report);

/// Whether the command line asks for the report.
[[nodiscard]] bool asksDoctor(const CommandLine& line);

/// The report where no instance runs: prints what a process of its own can see, and answers the exit status,
/// `unavailable`.
int runDoctor(const Platform& platform, const Storage& storage, const Settings& settings, const CommandLine& line,
              std::ostream& out);

}  // namespace tallowin
