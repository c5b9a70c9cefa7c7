#include "base/property_list_reading.h"

#include <algorithm>
#include <utility>

namespace tallowin::property_list {

const PropertyList* member(const PropertyList& value, std::string_view key) {
  if (!value.is_object()) {
    return nullptr;
  }
  const auto found = value.find(key);
  return found != value.end() ? &*found : nullptr;
}

std::optional<std::int64_t> integer(const PropertyList& value) {
  if (value.is_number_unsigned()) {
    const auto number = value.get<std::uint64_t>();
    return std::in_range<std::int64_t>(number) ? std::optional(static_cast<std::int64_t>(number)) : std::nullopt;
  }
  return value.is_number_integer() ? std::optional(value.get<std::int64_t>()) : std::nullopt;
}

std::optional<std::int32_t> integer32(const PropertyList& value) {
  const auto number = integer(value);
  return number && std::in_range<std::int32_t>(*number) ? std::optional(static_cast<std::int32_t>(*number))
                                                        : std::nullopt;
}

std::optional<double> real(const PropertyList& value) {
  return value.is_number() ? std::optional(value.get<double>()) : std::nullopt;
}

std::optional<bool> boolean(const PropertyList& value) {
  return value.is_boolean() ? std::optional(value.get<bool>()) : std::nullopt;
}

std::optional<std::string> text(const PropertyList& value) {
  return value.is_string() ? std::optional(value.get<std::string>()) : std::nullopt;
}

const PropertyList* listOfDictionaries(const PropertyList* value) {
  const bool good = value != nullptr && value->is_array() &&
                    std::ranges::all_of(*value, [](const PropertyList& element) { return element.is_object(); });
  return good ? value : nullptr;
}

}  // namespace tallowin::property_list
