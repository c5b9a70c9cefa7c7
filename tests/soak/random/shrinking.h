#pragma once

#include <functional>
#include <nlohmann/json.hpp>

namespace tallowin {

/// Takes everything out of a scenario that `stillFails` does without: actions, windows, displays, files, settings, in
/// ever smaller pieces, until nothing more can go or `mayGoOn` says no.
nlohmann::ordered_json shrunk(const nlohmann::ordered_json& scenario,
                              const std::function<bool(const nlohmann::ordered_json&)>& stillFails,
                              const std::function<bool()>& mayGoOn);

}  // namespace tallowin
