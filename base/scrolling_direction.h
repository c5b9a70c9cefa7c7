#pragma once

#include <optional>

#include "platform/property_list.h"

namespace tallowin {

/// The system's preference that says whether content follows the fingers.
inline constexpr auto scrollingDirectionPreference = "com.apple.swipescrolldirection";

/// What that preference means: natural scrolling, unless it is zero or false. Systems store it as a boolean or as an
/// integer.
[[nodiscard]] bool isNaturalScrolling(const std::optional<PropertyList>& preference);

}  // namespace tallowin
