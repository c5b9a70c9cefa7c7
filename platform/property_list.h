#pragma once

#include <nlohmann/json.hpp>

namespace tallowin {

/// A property list as the platform hands it over: null, boolean, integer, real, text (UTF-8), list or dictionary with
/// text keys. An integer is a whole number of the list itself; a real is never an integer, not even 3.0. Reading one is
/// total: see base/property_list_reading.h.
using PropertyList = nlohmann::json;

}  // namespace tallowin
