#pragma once

#include <cstdint>
#include <functional>
#include <nlohmann/json.hpp>
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

/// The same in a process of its own, as it may crash or never end. `loud`: what the process prints is seen, such as
/// what a sanitizer found.
Verdict judgeIsolated(const std::string& scenarioJSON, bool twice, bool loud);

/// Takes everything out of a scenario that `stillFails` does without: actions, windows, displays, files, settings, in
/// ever smaller pieces, until nothing more can go or `mayGoOn` says no.
nlohmann::ordered_json shrunk(const nlohmann::ordered_json& scenario,
                              const std::function<bool(const nlohmann::ordered_json&)>& stillFails,
                              const std::function<bool()>& mayGoOn);

}  // namespace tallowin
