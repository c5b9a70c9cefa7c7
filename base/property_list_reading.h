#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/property_list.h"

/// Total reading of property lists: a value of another type, or one that does not fit, reads as absent.
namespace tallowin::property_list {

/// The member of a dictionary; null when `value` is no dictionary or has no such key. Valid as long as `value`.
[[nodiscard]] const PropertyList* member(const PropertyList& value, std::string_view key);

/// An integer of the list that fits into 64 bits. Reals and booleans are not integers.
[[nodiscard]] std::optional<std::int64_t> integer(const PropertyList& value);
/// The same, if it fits into 32 bits.
[[nodiscard]] std::optional<std::int32_t> integer32(const PropertyList& value);
/// A real, or an integer as a real.
[[nodiscard]] std::optional<double> real(const PropertyList& value);
[[nodiscard]] std::optional<bool> boolean(const PropertyList& value);
[[nodiscard]] std::optional<std::string> text(const PropertyList& value);

/// A list whose elements are all dictionaries (an empty list too); null for anything else. Valid as long as `value`.
[[nodiscard]] const PropertyList* listOfDictionaries(const PropertyList* value);

/// Reads the member `key` of a dictionary with one of the functions above.
template <typename Value>
[[nodiscard]] std::optional<Value> member(const PropertyList& dictionary, std::string_view key,
                                          std::optional<Value> (*read)(const PropertyList&)) {
  const auto* found = member(dictionary, key);
  return found != nullptr ? read(*found) : std::nullopt;
}

}  // namespace tallowin::property_list
