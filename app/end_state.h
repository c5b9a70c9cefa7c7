#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <vector>

#include "core/space.h"
#include "platform/preferences.h"

namespace tallowin {

/// What the program leaves behind at the end of a simulation, as a record for people and tests: the displays with their
/// Spaces ("snapshot", null when they cannot be had) and the preferences that are set.
[[nodiscard]] nlohmann::ordered_json endState(const std::optional<std::vector<DisplaySpaces>>& displays,
                                              Preferences& preferences);

}  // namespace tallowin
