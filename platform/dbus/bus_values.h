#pragma once

#include <string>
#include <string_view>
#include <systemd/sd-bus.h>
#include <vector>

#include "platform/property_list.h"

namespace tallowin {

/// The text, with "?" for bytes above 127 where it is not UTF-8: the bus takes nothing else.
[[nodiscard]] std::string transmissible(std::string text);

/// The next argument of a message, of one of the types in platform/desktop_service.h.
[[nodiscard]] PropertyList readArgument(sd_bus_message* message, std::string_view type);

/// Appends a value as a result or property of this type. Negative, as of errno(3), when it has another one.
[[nodiscard]] int appendValue(sd_bus_message* message, std::string_view type, const PropertyList& value);

/// Appends a value of this type as a variant.
[[nodiscard]] int appendVariant(sd_bus_message* message, std::string_view type, const PropertyList& value);

/// Something with a name.
struct NamedBusValue {
  std::string name;
  std::string type;
  PropertyList value;
};

/// Appends them as "a{sv}".
[[nodiscard]] int appendNamed(sd_bus_message* message, const std::vector<NamedBusValue>& values);

}  // namespace tallowin
