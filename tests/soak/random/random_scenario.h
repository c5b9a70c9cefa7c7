#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>

namespace tallowin {

/// Draws a scenario: a desktop, what its user, its programs and its faults do, and, after a while in which nothing
/// happens any more, the quit. The same number gives the same scenario.
nlohmann::ordered_json drawScenario(std::uint64_t number);

}  // namespace tallowin
