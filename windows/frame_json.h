#pragma once

#include <optional>

#include "platform/geometry.h"
#include "platform/property_list.h"

namespace tallowin {

/// A rectangle as records hold it: [[x, y], [width, height]].
[[nodiscard]] PropertyList toJson(const CGRect& frame);

/// Nothing for anything but two pairs of numbers.
[[nodiscard]] std::optional<CGRect> frameFromJson(const PropertyList& json);

}  // namespace tallowin
