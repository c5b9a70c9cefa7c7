#pragma once

#include <cstdint>
#include <string>

namespace tallowin {

/// What came of a scenario.
struct Verdict {
  std::string invariant;  ///< the first that did not hold; empty when all did
  std::string detail;
  std::uint64_t journal = 0;  ///< a hash of what the program did
};

/// Runs the whole program through a scenario in virtual time and checks all invariants. `twice`: and that another run
/// does the same.
Verdict judge(const std::string& scenarioJSON, bool twice);

}  // namespace tallowin
