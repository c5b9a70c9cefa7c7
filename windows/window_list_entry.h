#pragma once

#include <optional>

#include "platform/geometry.h"
#include "platform/identifiers.h"
#include "platform/property_list.h"

/// Members of an entry of the window list (platform/window_list.h) that several services read. Total.
namespace tallowin {

/// The smallest window, in points each way, that may count as one.
inline constexpr double smallestWindow = 60;

/// "kCGWindowNumber"; nothing when it is missing or does not fit.
[[nodiscard]] std::optional<WindowNumber> windowNumber(const PropertyList& entry);

/// "kCGWindowBounds": nothing without width and height; a missing coordinate of the corner is 0.
[[nodiscard]] std::optional<CGRect> windowBounds(const PropertyList& entry);

}  // namespace tallowin
