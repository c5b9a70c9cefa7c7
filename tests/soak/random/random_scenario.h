#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>

namespace tallowin {

class Dice;

/// Draws a scenario: a desktop, what its user, its programs and its faults do, and, after a while in which nothing
/// happens any more, the quit. The same number gives the same scenario.
nlohmann::ordered_json drawScenario(std::uint64_t number);

/// Draws everything of a scenario but its script. A calm one has no fault of the machine, and nobody's applications
/// misbehave.
nlohmann::ordered_json drawDesktop(Dice& dice, bool calm);

/// One of the three displays that come and go, as a record of the scenario; they stand side by side.
nlohmann::ordered_json displayRecord(int id);

/// Whether calm scenarios may have this action of a script.
bool isCalmAction(const std::string& name);

}  // namespace tallowin
