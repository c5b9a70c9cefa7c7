#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/program_services.h"

namespace tallowin {

/// What must be right for everything to work. May wait for other programs, a second at most.
[[nodiscard]] std::vector<SetUpCheck> setUpChecks(const Platform& platform, const Storage& storage);

/// The report that users paste into a support request, one fact a line, without a line feed at the end. What is known
/// only of some systems comes last. `shortcutFailures` are the names of shortcuts that other programs have taken. May
/// take as long as setUpChecks(), and as a program takes to tell its version.
[[nodiscard]] std::string diagnosticsReport(const ProgramServices& services, const SpaceSnapshot& snapshot,
                                            const std::vector<std::string>& shortcutFailures = {});

/// The value of PRETTY_NAME in a file in the form of os-release(5); nothing when it has none.
[[nodiscard]] std::optional<std::string> prettyNameOfOSRelease(std::string_view text);

}  // namespace tallowin
