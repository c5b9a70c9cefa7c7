#include "windows/window_info.h"

#include <utility>

#include "base/property_list_reading.h"

namespace tallowin {

namespace {

std::optional<std::pair<double, double>> pair(const PropertyList& json) {
  if (!json.is_array() || json.size() != 2) {
    return std::nullopt;
  }
  const auto first = property_list::real(json[0]);
  const auto second = property_list::real(json[1]);
  return first && second ? std::optional(std::pair(*first, *second)) : std::nullopt;
}

}  // namespace

PropertyList toJson(const CGRect& frame) {
  return PropertyList::array({PropertyList::array({frame.origin.x, frame.origin.y}),
                              PropertyList::array({frame.size.width, frame.size.height})});
}

std::optional<CGRect> frameFromJson(const PropertyList& json) {
  if (!json.is_array() || json.size() != 2) {
    return std::nullopt;
  }
  const auto origin = pair(json[0]);
  const auto size = pair(json[1]);
  return origin && size ? std::optional(CGRect{{origin->first, origin->second}, {size->first, size->second}})
                        : std::nullopt;
}

}  // namespace tallowin
