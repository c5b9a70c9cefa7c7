#include "windows/window_list_entry.h"

#include <utility>

#include "base/property_list_reading.h"

namespace tallowin {

namespace plist = property_list;

std::optional<WindowNumber> windowNumber(const PropertyList& entry) {
  const auto number = plist::member(entry, "kCGWindowNumber", plist::integer);
  return number && std::in_range<WindowNumber>(*number) ? std::optional(static_cast<WindowNumber>(*number))
                                                        : std::nullopt;
}

std::optional<CGRect> windowBounds(const PropertyList& entry) {
  const auto* const bounds = plist::member(entry, "kCGWindowBounds");
  if (bounds == nullptr) {
    return {};
  }
  const auto number = [&](std::string_view key) { return plist::member(*bounds, key, plist::real); };
  const auto width = number("Width");
  const auto height = number("Height");
  if (!width || !height) {
    return {};
  }
  return CGRect{{number("X").value_or(0), number("Y").value_or(0)}, {*width, *height}};
}

}  // namespace tallowin
