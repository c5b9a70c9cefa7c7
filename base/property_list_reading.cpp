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

std::optional<std::vector<std::string>> textList(const PropertyList& value) {
  const bool good =
      value.is_array() && std::ranges::all_of(value, [](const PropertyList& element) { return element.is_string(); });
  return good ? std::optional(value.get<std::vector<std::string>>()) : std::nullopt;
}

const PropertyList* listOfDictionaries(const PropertyList* value) {
  const bool good = value != nullptr && value->is_array() &&
                    std::ranges::all_of(*value, [](const PropertyList& element) { return element.is_object(); });
  return good ? value : nullptr;
}

}  // namespace tallowin::property_list

namespace tallowin {

const PropertyList* RecordReader::member(std::string_view key) {
  const auto* found = property_list::member(record_, key);
  return found != nullptr && !found->is_null() ? found : nullptr;
}

template <typename Value>
std::optional<Value> RecordReader::read(std::string_view key, std::optional<Value> (*readValue)(const PropertyList&)) {
  const auto* found = member(key);
  auto value = found != nullptr ? readValue(*found) : std::nullopt;
  good_ = good_ && (found == nullptr || value.has_value());
  return value;
}

std::optional<std::string> RecordReader::text(std::string_view key) {
  return read(key, property_list::text);
}

bool RecordReader::boolean(std::string_view key) {
  return read(key, property_list::boolean).value_or(false);
}

std::vector<std::string> RecordReader::textList(std::string_view key) {
  return read(key, property_list::textList).value_or(std::vector<std::string>());
}

}  // namespace tallowin
