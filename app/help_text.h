#pragma once

#include <span>
#include <string>
#include <string_view>

namespace tallowin {

/// What it means that the program ends with a status.
struct ExitStatusMeaning {
  int status;
  std::string_view meaning;
};

/// All statuses that the program ends with by itself, in rising order.
[[nodiscard]] std::span<const ExitStatusMeaning> exitStatusMeanings();

/// The text of --help.
[[nodiscard]] std::string helpText();

}  // namespace tallowin
