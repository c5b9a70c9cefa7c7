#pragma once

#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "platform/x11/x11_properties.h"

namespace tallowin {

/// Properties as a server gives them.
inline X11Property words(const std::vector<std::uint32_t>& values) {
  X11Property property{.format = 32, .bytes = std::string(values.size() * 4, '\0')};
  std::memcpy(property.bytes.data(), values.data(), property.bytes.size());
  return property;
}

inline X11Property text(std::string_view bytes) {
  return {.format = bytes.empty() ? 0 : 8, .bytes = std::string(bytes)};
}

}  // namespace tallowin
