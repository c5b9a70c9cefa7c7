#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

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
[[nodiscard]] std::optional<std::vector<std::string>> textList(const PropertyList& value);

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

namespace tallowin {

/// Reads a record's members one by one. A member that is missing or null reads as absent (false, an empty list); one of
/// the wrong type makes the whole record a bad one.
class RecordReader {
 public:
  /// `record` must outlive the reader. Anything but an object is a bad record.
  explicit RecordReader(const PropertyList& record) : record_(record), good_(record.is_object()) {}

  std::optional<std::string> text(std::string_view key);
  bool boolean(std::string_view key);
  std::vector<std::string> textList(std::string_view key);
  /// The member itself, null members counting as missing.
  const PropertyList* member(std::string_view key);

  void fail() { good_ = false; }
  /// Whether everything read so far had its type.
  [[nodiscard]] bool good() const { return good_; }

 private:
  template <typename Value>
  std::optional<Value> read(std::string_view key, std::optional<Value> (*readValue)(const PropertyList&));

  const PropertyList& record_;
  bool good_;
};

/// What `read` makes of every element of a list; nothing for anything but a list, or when one of them cannot be read.
template <typename Read>
auto listFromJson(const PropertyList& json, const Read& read) {
  using Values = std::vector<typename std::invoke_result_t<Read, const PropertyList&>::value_type>;
  auto values = json.is_array() ? std::optional<Values>(std::in_place) : std::nullopt;
  for (auto element = json.begin(); values && element != json.end(); ++element) {
    if (auto value = read(*element)) {
      values->push_back(*std::move(value));
    } else {
      values.reset();
    }
  }
  return values;
}

/// The list of what `write` makes of each value.
template <typename Values, typename Write>
PropertyList listToJson(const Values& values, const Write& write) {
  auto list = PropertyList::array();
  for (const auto& value : values) {
    list.push_back(write(value));
  }
  return list;
}

}  // namespace tallowin
