#pragma once

#include "tests/soak/random/dice.h"

namespace tallowin {

/// Draws everything of a scenario but its script. A calm one has no fault of the machine, and nobody's applications
/// misbehave.
nlohmann::ordered_json drawDesktop(Dice& dice, bool calm);

/// One of the three displays that come and go, as a record of the scenario; they stand side by side.
nlohmann::ordered_json displayRecord(int id);

}  // namespace tallowin
